#pragma once

namespace kvo::editor {

// A part of a page in UTF-8, its controls as elements.
inline constexpr char kFragmentType[] = "application/x-kvo-page-fragment";
// An entry of the toolbox: its number.
inline constexpr char kToolType[] = "application/x-kvo-tool";

}  // namespace kvo::editor
