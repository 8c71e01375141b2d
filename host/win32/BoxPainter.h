// Draws design-time boxes.
#pragma once

#include <windows.h>

#include "common/frame/DesignBox.h"

namespace kvo {

// The size of a box at the screen's resolution.
SIZE BoxSize(const Box& box);

// Draws the box into `target`, which has the same proportions, in the desktop's colours and the
// device's units. Works for metafiles.
void DrawBox(HDC device, const Box& box, const RECT& target);

}  // namespace kvo
