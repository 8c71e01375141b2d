// Pictures of design-time boxes as SVG, drawn in twips.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/frame/DesignBox.h"

namespace kvo {

// A document with the boxes one under the other.
std::string BoxPicture(const std::vector<Box>& boxes);

// Appends one box as an element to stand in the text of an HTML page, at its size on the screen.
// `attributes` go into its start tag as they are.
void AppendInlineBox(std::string& html, const Box& box, std::string_view attributes);

}  // namespace kvo
