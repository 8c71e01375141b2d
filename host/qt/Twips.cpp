#include "host/qt/Twips.h"

#include <QPaintDevice>
#include <cmath>

namespace kvo {

int ToPixels(int twips, const QPaintDevice& device) {
  constexpr double kTwipsPerInch = 1440;
  return static_cast<int>(std::lround(twips * device.logicalDpiX() / kTwipsPerInch));
}

}  // namespace kvo
