// What FormView is made of: one view for each control, with the widget that shows it.
#pragma once

#include <QWidget>

#include "host/desktop/FormViews.h"

namespace kvo {

using ViewHost = FormAround<QWidget*>;

// The widget belongs to its parent widget.
class ControlView : public WidgetView<QWidget*> {
 public:
  void ShowEnabled(bool enabled) override {
    if (Widget() != nullptr) Widget()->setEnabled(enabled);
  }
  void ShowVisible(bool visible) override {
    if (Widget() != nullptr) Widget()->setVisible(visible);
  }
  void Enter(bool /*backwards*/) override { Widget()->setFocus(Qt::TabFocusReason); }
  // Whether the form's measures place the widget.
  virtual bool IsPlaced() const { return true; }
};

template <class Control, class OwnWidget>
using WidgetViewOf = ViewOf<ControlView, Control, ViewHost, OwnWidget*>;

}  // namespace kvo
