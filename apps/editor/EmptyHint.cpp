#include "apps/editor/EmptyHint.h"

#include <QEvent>
#include <QPainter>

#include "apps/editor/Words.h"

namespace kvo::editor {

EmptyHint::EmptyHint(QAbstractItemView& list, const Localized& text)
    : QLabel(Text(text), list.viewport()), list_(list) {
  setTextFormat(Qt::PlainText);
  setAttribute(Qt::WA_TransparentForMouseEvents);
  list.viewport()->installEventFilter(this);
  const QAbstractItemModel* model = list.model();
  connect(model, &QAbstractItemModel::modelReset, this, [this] { Follow(); });
  connect(model, &QAbstractItemModel::rowsInserted, this, [this] { Follow(); });
  connect(model, &QAbstractItemModel::rowsRemoved, this, [this] { Follow(); });
  Follow();
}

void EmptyHint::Follow() {
  const bool empty = list_.model()->rowCount() == 0;
  setVisible(empty);
  list_.setAccessibleDescription(empty ? text() : QString());
  setGeometry(list_.viewport()->rect());
}

bool EmptyHint::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) setGeometry(list_.viewport()->rect());
  return QLabel::eventFilter(watched, event);
}

void EmptyHint::paintEvent(QPaintEvent*) {
  constexpr int kMargin = 12;
  QPainter painter(this);
  // Stays legible in a disabled list.
  painter.setPen(palette().color(QPalette::Active, QPalette::PlaceholderText));
  painter.drawText(rect().adjusted(kMargin, kMargin, -kMargin, -kMargin),
                   Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, text());
}

}  // namespace kvo::editor
