// The parts of FormView: one view for each control, with the widget that shows it.
#pragma once

#include <QWidget>

#include "host/desktop/FormViews.h"

namespace kvo {

using ViewHost = FormAround<QWidget*>;

// A view of a control. The widget's parent owns it.
class ControlView : public WidgetView<QWidget*> {
 public:
  void ShowEnabled(bool enabled) override {
    if (Widget() != nullptr) Widget()->setEnabled(enabled);
  }
  void ShowVisible(bool visible) override {
    if (Widget() != nullptr) Widget()->setVisible(visible);
  }
  void Enter(bool /*backwards*/) override { Widget()->setFocus(Qt::TabFocusReason); }
  // Whether the form sets the widget's position and size.
  virtual bool IsPlaced() const { return true; }
};

template <class Control, class OwnWidget>
using WidgetViewOf = ViewOf<ControlView, Control, ViewHost, OwnWidget*>;

}  // namespace kvo
