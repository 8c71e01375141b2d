#pragma once

#include <string_view>

#include "common/forms/FormControl.h"

namespace kvo {

// Returns a control's name for screen readers: its caption; else the caption of the label before it
// in its line, or of the label just above it; else its own name.
std::string_view AccessibleName(const FormControl& control);

}  // namespace kvo
