#include "pages/ColorDialog.h"

#include "common/text/modGlobal.h"

namespace kvo {

std::string ColorDialog::Choose(std::string_view current) {
  if (!current.empty()) {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    ParseColor(current, red, green, blue);  // white when it is no colour
    color_ = red + green * 0x100 + blue * 0x10000;
  }
  color_ = ThePlatform().ChooseColor(color_);
  return '#' + ColorToHex(color_);
}

}  // namespace kvo
