#pragma once

#include <string_view>

#include "common/forms/FormControl.h"

namespace kvo {

// What a control is called by those who do not see it: its caption; else that of the label before
// it in its line, or else of the one right over it; else its own name.
std::string_view AccessibleName(const FormControl& control);

}  // namespace kvo
