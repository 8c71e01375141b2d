// A frame around a panel, which shows the keyboard focus.
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
