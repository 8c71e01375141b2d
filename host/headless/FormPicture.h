#pragma once

#include <string>

#include "common/forms/Form.h"

namespace kvo {

// Draws the current state of a page or dialog as an SVG document in Tahoma, with its caption above
// it. Of tabs, draws the open one. Units are twips, 15 to a pixel. Fetches the visible rows of a
// data grid and passes on the database's exceptions.
std::string FormPicture(Form& form);

}  // namespace kvo
