#pragma once

namespace kvo::editor {

// Makes screen readers read each control in the source view as its class and captions instead of
// one unknown character. Takes effect once per process; further calls do nothing.
void InstallSourceAccessibility();

}  // namespace kvo::editor
