#pragma once

#include <string>

#include "host/qt/FormView.h"

namespace kvo {

// Line by line, in what the widgets of a form differ from the form; nothing when in nothing.
std::string Misshown(FormView& view, const Form& form);

}  // namespace kvo
