#include "host/qt/Swatch.h"

#include <QPainter>

#include "common/text/modGlobal.h"
#include "host/qt/Twips.h"

namespace kvo {

std::optional<QColor> SwatchOf(const PropertyGridItem& item) {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  if (item.Kind() != ItemKind::color || !ParseColor(ToText(item.Value()), red, green, blue))
    return std::nullopt;
  return QColor(red, green, blue);
}

int SwatchSize(const QWidget& on) {
  constexpr int kSize = 180;
  return ToPixels(kSize, on);
}

QPixmap SwatchPicture(const QColor& color, const QWidget& on) {
  const int size = SwatchSize(on);
  QPixmap picture(QSize(size, size) * on.devicePixelRatioF());
  picture.setDevicePixelRatio(on.devicePixelRatioF());
  QPainter painter(&picture);
  painter.fillRect(0, 0, size, size, on.palette().color(QPalette::Text));
  painter.fillRect(1, 1, size - 2, size - 2, color);
  return picture;
}

}  // namespace kvo
