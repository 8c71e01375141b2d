// The block-level marker form: one HTML comment around a tag with its content, which an HTML editor
// keeps as one unit. Nothing may stand between a marker and its tag, nothing follows the end.
#pragma once

#include <string_view>

namespace kvo {

inline constexpr std::string_view kBlockStart = "<!--KVO BLOCKLEVEL ELEMENT STARTSPAN";
inline constexpr std::string_view kBlockEnd = "KVO BLOCKLEVEL ELEMENT ENDSPAN-->";

}  // namespace kvo
