#pragma once

namespace kvo::editor {

// Lets screen readers hear the source view with each control as what it is - its class and captions
// - instead of as one unknown character. Once per process; further calls do nothing.
void InstallSourceAccessibility();

}  // namespace kvo::editor
