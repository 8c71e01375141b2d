#include "apps/editor/PageLayout.h"

#include <QGuiApplication>
#include <QPainter>
#include <QTextBlock>
#include <QTextInlineObject>
#include <algorithm>

#include "apps/editor/Colors.h"
#include "host/qt/BoxPainter.h"

namespace kvo::editor {
namespace {

constexpr double kOddMargin = 2;
constexpr double kBoxMargin = 1;
constexpr double kNarrowestBox = 60;

QFont OddFont(const QTextDocument& document) {
  QFont font = document.defaultFont();
  font.setPointSizeF(font.pointSizeF() * 0.75);
  return font;
}

}  // namespace

QString OddText(const QByteArray& bytes) {
  const QString text = QString::fromUtf8(bytes);
  if (text.size() == 1 && text[0] != QChar::ReplacementCharacter)
    return "U+" + QString::number(text[0].unicode(), 16).toUpper().rightJustified(4, '0');
  return QString::fromLatin1(bytes.toHex(' ').toUpper());
}

PageLayout::PageLayout(const PageDocument& document)
    : QPlainTextDocumentLayout(const_cast<PageDocument&>(document).Document()), page_(document) {}

double PageLayout::IndentationBefore(int position) const {
  const QTextBlock block = document()->findBlock(position);
  const QFontMetricsF metrics(document()->defaultFont());
  double width = 0;
  for (const QChar c : block.text().left(position - block.position())) {
    if (!c.isSpace()) return 0;
    width += c == u'\t' ? document()->defaultTextOption().tabStopDistance()
                        : metrics.horizontalAdvance(c);
  }
  return width;
}

Box PageLayout::Fitted(Box box, int position) const {
  const double width = BoxSize(box, device_).width();
  double room = lineWidth_ - 2 * kBoxMargin;
  if (lineWidth_ <= 0 || width + IndentationBefore(position) <= room) return box;
  room = std::max(kNarrowestBox, room - IndentationBefore(position));
  if (width <= room) return box;
  const int lost = box.width - static_cast<int>(box.width * room / width);
  box.width -= lost;
  box.border.width -= lost;
  return box;
}

void PageLayout::resizeInlineObject(QTextInlineObject item, int position,
                                    const QTextFormat& format) {
  const QFontMetricsF metrics(document()->defaultFont());
  if (const auto look = page_.LookOf(format)) {
    const QSizeF size = BoxSize(Fitted(look->box, position), device_);
    item.setWidth(size.width() + 2 * kBoxMargin);
    // Centres the box on its line.
    const double below = (size.height() - metrics.xHeight()) / 2;
    item.setAscent(size.height() - below + kBoxMargin);
    item.setDescent(below + kBoxMargin);
    return;
  }
  const QFontMetricsF odd(OddFont(*document()));
  item.setWidth(odd.horizontalAdvance(OddText(PageDocument::BytesOf(format))) + 4 * kOddMargin);
  item.setAscent(metrics.ascent());
  item.setDescent(metrics.descent());
}

void PageLayout::drawInlineObject(QPainter* painter, const QRectF& rect, QTextInlineObject,
                                  int position, const QTextFormat& format) {
  painter->save();
  const bool selected = isSelected && isSelected(position);
  if (const auto look = page_.LookOf(format)) {
    const Box box = Fitted(look->box, position);
    const QSizeF size = BoxSize(box, device_);
    const QPointF corner = rect.center() - QPointF(size.width(), size.height()) / 2;
    PaintBox(*painter, box, {corner, size}, selected);
    if (const auto frame = frameOf ? frameOf(position) : std::nullopt) {
      painter->setPen(QPen(*frame, 2));
      painter->setBrush(Qt::NoBrush);
      painter->drawRect(QRectF(corner, size).adjusted(1, 1, -1, -1));
    }
  } else {
    painter->setFont(OddFont(*document()));
    painter->setPen(ColorsOfSource(SchemeOf(QGuiApplication::palette())).odd);
    const QRectF frame = rect.adjusted(1, 1, -1, -1);
    painter->drawRoundedRect(frame, 2, 2);
    painter->drawText(frame, Qt::AlignCenter, OddText(PageDocument::BytesOf(format)));
  }
  painter->restore();
}

}  // namespace kvo::editor
