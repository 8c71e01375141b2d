// Draws design-time boxes.
#pragma once

#include <windows.h>

#include "common/frame/DesignBox.h"

namespace kvo {

// The size of a box at the resolution of the screen.
SIZE BoxSize(const Box& box);

// Draws the box into `target`, which has its proportions, in the colours of the desktop and in
// whatever units the device counts. Fit for metafiles.
void DrawBox(HDC device, const Box& box, const RECT& target);

}  // namespace kvo
