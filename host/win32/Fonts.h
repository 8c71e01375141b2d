#pragma once

#include <windows.h>

#include "common/forms/FormControl.h"

namespace kvo {

// A form's font at the resolution of the screen: Tahoma in 8.25 point is 11 pixels high at 96 dots
// to the inch. It is made once and belongs to the component.
HFONT FontOf(const Font& font);

// Draws with an object for as long as it lives.
class Selected {
 public:
  Selected(HDC device, HGDIOBJ object) : device_(device), former_(SelectObject(device, object)) {}
  Selected(const Selected&) = delete;
  Selected& operator=(const Selected&) = delete;
  ~Selected() { SelectObject(device_, former_); }

 private:
  HDC device_;
  HGDIOBJ former_;
};

}  // namespace kvo
