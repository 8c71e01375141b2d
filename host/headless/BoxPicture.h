// Pictures of design-time boxes as SVG, drawn in twips.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/frame/DesignBox.h"

namespace kvo {

// Returns an SVG document with the boxes below each other.
std::string BoxPicture(const std::vector<Box>& boxes);

// Appends one box as an inline element of an HTML page, at its size on the screen. `attributes` are
// inserted into its start tag unchanged.
void AppendInlineBox(std::string& html, const Box& box, std::string_view attributes);

}  // namespace kvo
