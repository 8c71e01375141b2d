#pragma once

#include <windows.h>

#include "common/forms/FormControl.h"

namespace kvo {

// Returns a form's font at the screen's resolution: Tahoma in 8.25 point is 11 pixels high at 96
// dpi. Created once and owned by the component.
HFONT FontOf(const Font& font);

// Selects an object into a device context during its lifetime.
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
