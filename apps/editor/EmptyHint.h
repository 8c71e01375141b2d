// The text in place of the rows of an empty list: says how to get some.
#pragma once

#include <QAbstractItemView>
#include <QLabel>

#include "common/values/Localized.h"

namespace kvo::editor {

class EmptyHint final : public QLabel {
  Q_OBJECT

 public:
  // Shows over the list whenever its model has no rows.
  EmptyHint(QAbstractItemView& list, const Localized& text);

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Follow();

  QAbstractItemView& list_;
};

}  // namespace kvo::editor
