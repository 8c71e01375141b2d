// What FormView is made of: one view for each control, with the widget that shows it.
#pragma once

#include <QWidget>
#include <exception>
#include <functional>
#include <memory>

#include "common/FormRenderer.h"

namespace kvo {

// What the user does to a form, for the widgets' side.
struct UserAction : FormRenderer {
  using FormRenderer::Choose;
  using FormRenderer::ChooseValue;
  using FormRenderer::Click;
  using FormRenderer::ClickButton;
  using FormRenderer::DoubleClick;
  using FormRenderer::Edit;
  using FormRenderer::EditValue;
  using FormRenderer::PressDelete;
  using FormRenderer::Select;
  using FormRenderer::SelectItem;
  using FormRenderer::SelectRows;
  using FormRenderer::SelectTab;
  using FormRenderer::Tick;
};

// The form around a view.
class ViewHost {
 public:
  // Performs what the user did. What the page throws is reported and goes no further. Does nothing
  // while a widget is being brought in step with the form: its signals are no user's then.
  virtual void Act(const std::function<void()>& action) = 0;
  // Reports a failure once the widgets have come to rest: for what fails while they paint.
  virtual void ReportLater(std::exception_ptr failure) = 0;
  // Brings a widget in step with the form.
  virtual void Update(const std::function<void()>& change) = 0;
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
