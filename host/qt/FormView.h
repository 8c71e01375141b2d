#pragma once

#include "host/qt/ControlView.h"

namespace kvo {

// Shows one form with native widgets, named after their controls and in the same order. The widget
// of a TabPanel is its page.
class FormView final : public QWidget, public FormViews<ControlView, ViewHost> {
 public:
  FormView(Form& form, QWidget* parent);
  ~FormView() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  std::unique_ptr<ControlView> MakeView(FormControl& control, QWidget* parent) override;
  void SetUp(FormControl& control, ControlView& view, const ControlView* around) override;
  QWidget* ParentOf(QWidget* widget) const override { return widget->parentWidget(); }
  bool HasFocus() const override;
  void HandFocusOn() override;
  void CallForReport() override;

  void FocusMoved(QWidget* now);
};

}  // namespace kvo
