#include "host/win32/Twips.h"

#include <windows.h>

#include "common/frame/DesignBox.h"

namespace kvo {

int ScreenResolution() {
  const HDC screen = GetDC(nullptr);
  const int dots = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return dots;
}

int ToPixels(int twips) { return MulDiv(twips, ScreenResolution(), kTwipsPerInch); }

}  // namespace kvo
