// Pictures of design-time boxes as SVG, drawn in twips.
#pragma once

#include <string>
#include <vector>

#include "common/DesignBox.h"

namespace kvo {

// One picture with the boxes one under the other.
std::string ToSvg(const std::vector<Box>& boxes);

}  // namespace kvo
