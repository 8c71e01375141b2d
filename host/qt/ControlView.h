// What FormView is made of: one view for each control, with the widget that shows it.
#pragma once

#include <QWidget>
#include <memory>

#include "common/forms/FormActions.h"

namespace kvo {

// The form around a view.
class ViewHost : public FormActions {
 public:
  // nullptr for what has none.
  virtual QWidget* WidgetOf(const FormControl& control) const = 0;

 protected:
  ~ViewHost() = default;
};

class ControlView {
 public:
  ControlView() = default;
  ControlView(const ControlView&) = delete;
  ControlView& operator=(const ControlView&) = delete;
  virtual ~ControlView() = default;

  // nullptr for what nobody sees. It belongs to its parent widget.
  virtual QWidget* Widget() const = 0;
  // Brings an aspect of the control to its widget; called by ViewHost::Update.
  virtual void Show(Aspect aspect) = 0;
  virtual void ShowItem(PropertyGridItem& /*item*/) {}
  virtual void ShowEnabled(bool enabled) {
    if (Widget() != nullptr) Widget()->setEnabled(enabled);
  }
  virtual void ShowVisible(bool visible) {
    if (Widget() != nullptr) Widget()->setVisible(visible);
  }
  // Whether the form's measures place the widget.
  virtual bool IsPlaced() const { return Widget() != nullptr; }
};

// A view of `control` with its widget in `parent`, filled.
std::unique_ptr<ControlView> MakeView(FormControl& control, QWidget& parent, ViewHost& host);

}  // namespace kvo
