#include "apps/editor/FocusFrame.h"

#include <QApplication>
#include <QPainter>
#include <QVBoxLayout>

namespace kvo::editor {

FocusFrame::FocusFrame(QWidget* content, QWidget* parent) : QWidget(parent) {
  constexpr int kWidth = 2;
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kWidth, kWidth, kWidth, kWidth);
  layout->addWidget(content);
  content->setAutoFillBackground(true);  // the frame is painted behind it
  setFocusProxy(content);
  connect(qApp, &QApplication::focusChanged, this, [this] { update(); });
}

void FocusFrame::paintEvent(QPaintEvent*) {
  if (isAncestorOf(QApplication::focusWidget()))
    QPainter(this).fillRect(rect(), palette().highlight());
}

}  // namespace kvo::editor
