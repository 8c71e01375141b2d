#include "host/qt/Swatch.h"

#include <QPainter>

#include "host/desktop/Measures.h"
#include "host/qt/Twips.h"

namespace kvo {

int SwatchSize(const QWidget& on) { return ToPixels(kSwatchSize, on); }

QPixmap SwatchPicture(const Swatch& color, const QWidget& on) {
  const int size = SwatchSize(on);
  QPixmap picture(QSize(size, size) * on.devicePixelRatioF());
  picture.setDevicePixelRatio(on.devicePixelRatioF());
  QPainter painter(&picture);
  painter.fillRect(0, 0, size, size, on.palette().color(QPalette::Text));
  painter.fillRect(1, 1, size - 2, size - 2, QColor(color.red, color.green, color.blue));
  return picture;
}

}  // namespace kvo
