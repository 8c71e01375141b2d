// Lays the source text out, with each control as its labelled box in the line.
#pragma once

#include <QPlainTextDocumentLayout>

#include "apps/editor/PageDocument.h"

namespace kvo::editor {

class PageLayout final : public QPlainTextDocumentLayout {
 public:
  explicit PageLayout(const PageDocument& document);

  // The device on which the boxes are shown; decides their size.
  void Device(const QPaintDevice* device) { device_ = device; }

 protected:
  void resizeInlineObject(QTextInlineObject item, int position, const QTextFormat& format) override;
  void positionInlineObject(QTextInlineObject, int, const QTextFormat&) override {}
  void drawInlineObject(QPainter* painter, const QRectF& rect, QTextInlineObject object,
                        int position, const QTextFormat& format) override;

 private:
  const PageDocument& page_;
  const QPaintDevice* device_ = nullptr;
};

// What an odd character shows: the code points or bytes that it stands for.
QString OddText(const QByteArray& bytes);

}  // namespace kvo::editor
