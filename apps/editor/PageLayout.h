// Lays out the source text with each control as its labelled box.
#pragma once

#include <QPlainTextDocumentLayout>
#include <functional>
#include <optional>

#include "apps/editor/PageDocument.h"

namespace kvo::editor {

class PageLayout final : public QPlainTextDocumentLayout {
 public:
  explicit PageLayout(const PageDocument& document);

  // Sets the device that shows the boxes; decides their size.
  void Device(const QPaintDevice* device) { device_ = device; }
  // The width of a line, in pixels; wider boxes are drawn narrower. 0: lines are not wrapped.
  void LineWidth(double width) { lineWidth_ = width; }
  // Whether the character at a position is selected. Set by the widget.
  std::function<bool(int position)> isSelected;
  // The colour of the frame around the character at a position, if it has one.
  std::function<std::optional<QColor>(int position)> frameOf;

 protected:
  void resizeInlineObject(QTextInlineObject item, int position, const QTextFormat& format) override;
  void positionInlineObject(QTextInlineObject, int, const QTextFormat&) override {}
  void drawInlineObject(QPainter* painter, const QRectF& rect, QTextInlineObject object,
                        int position, const QTextFormat& format) override;

 private:
  // The box at a position as it fits into its line.
  Box Fitted(Box box, int position) const;
  // An indentation is never wrapped: what follows stays in its line.
  double IndentationBefore(int position) const;

  const PageDocument& page_;
  const QPaintDevice* device_ = nullptr;
  double lineWidth_ = 0;
};

// Returns the text shown for an odd character: the code point or bytes that it represents.
QString OddText(const QByteArray& bytes);

}  // namespace kvo::editor
