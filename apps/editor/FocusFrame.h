// What surrounds a panel: a frame that shows where the keyboard is.
#pragma once

#include <QWidget>

namespace kvo::editor {

class FocusFrame final : public QWidget {
 public:
  FocusFrame(QWidget* content, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace kvo::editor
