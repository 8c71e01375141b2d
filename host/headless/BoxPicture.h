// Pictures of design-time boxes as SVG, drawn in twips.
#pragma once

#include <string>
#include <vector>

#include "common/frame/DesignBox.h"

namespace kvo {

// Returns an SVG document with the boxes below each other.
std::string BoxPicture(const std::vector<Box>& boxes);

}  // namespace kvo
