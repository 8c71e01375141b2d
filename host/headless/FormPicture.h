#pragma once

#include <string>

#include "common/forms/Form.h"

namespace kvo {

// A page or dialog as it looks now, as an SVG document set in Tahoma: its caption over it,
// captions, boxes, lists with their content, the open tab. Measures are twips, 15 to a pixel. Rows
// of a data grid are fetched as far as they show; what the database throws reaches the caller.
std::string FormPicture(Form& form);

}  // namespace kvo
