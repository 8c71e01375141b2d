#include "host/qt/Twips.h"

#include <QPaintDevice>
#include <cmath>

#include "common/frame/DesignBox.h"

namespace kvo {

int ToPixels(int twips, const QPaintDevice& device) {
  return static_cast<int>(
      std::lround(static_cast<double>(twips) * device.logicalDpiX() / kTwipsPerInch));
}

}  // namespace kvo
