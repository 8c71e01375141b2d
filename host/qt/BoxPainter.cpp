#include "host/qt/BoxPainter.h"

#include <QFontMetricsF>

#include "host/qt/QtText.h"
#include "host/qt/TahomaFont.h"

namespace kvo {
namespace {

// `scale` is pixels per twip. Sets the font size in pixels instead of scaling the painter, so that
// text is hinted, and bold is synthesised where the family has none.
void DrawLabel(QPainter& painter, const Box::Label& label, const Box& box, double scale) {
  QString caption = ToQt(label.caption);
  for (QChar& c : caption)
    if (c.unicode() < 0x20) c = u' ';
  if (caption.isEmpty()) return;
  QFont font = QtFont({.weight = label.weight});
  font.setPixelSize(std::max(1, qRound(Font().points * kTwipsPerPoint * scale)));
  // The width was measured in Tahoma; a substitute font must fit into the same box.
  const double width = ThePlatform().TextWidth(label.caption, label.weight) * scale;
  const double slack = width - QFontMetricsF(font).horizontalAdvance(caption);
  font.setLetterSpacing(QFont::AbsoluteSpacing, slack / static_cast<double>(caption.size()));
  painter.setFont(font);
  painter.drawText(QRectF(label.at.left * scale, label.at.top * scale,
                          (box.width - label.at.left) * scale, (box.height - label.at.top) * scale),
                   Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, caption);
}

}  // namespace

QSizeF BoxSize(const Box& box, const QPaintDevice* device) {
  const double dots = device == nullptr ? kTwipsPerInch / kTwipsPerPixel : device->logicalDpiX();
  return QSizeF(box.width, box.height) * (dots / kTwipsPerInch);
}

void PaintBox(QPainter& painter, const Box& box, const QRectF& target, bool selected,
              const QPalette& palette) {
  if (box.width <= 0 || box.height <= 0) return;
  painter.save();
  painter.setClipRect(target, Qt::IntersectClip);
  painter.translate(target.topLeft());
  const double scale = target.width() / box.width;
  QPen pen(palette.color(QPalette::Highlight), kTwipsPerPixel * scale * (selected ? 2 : 1));
  pen.setJoinStyle(Qt::MiterJoin);
  painter.setPen(pen);
  // The text widget tints a selected box; black on white, or white on black, stays legible.
  const bool dark = palette.color(QPalette::Base).lightness() < 128;
  const QColor selectedText = dark ? Qt::white : Qt::black;
  painter.setBrush(palette.color(selected ? QPalette::Base : QPalette::Window));
  painter.drawRect(QRectF(box.border.left * scale, box.border.top * scale,
                          std::max(0, box.border.width) * scale,
                          std::max(0, box.border.height) * scale));
  painter.setPen(selected ? selectedText : palette.color(QPalette::WindowText));
  for (const Box::Label& label : box.labels) DrawLabel(painter, label, box, scale);
  painter.restore();
}

}  // namespace kvo
