#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include "host/qt/ControlView.h"

namespace kvo {

// Shows one form with native widgets; ends before it, and not while a user action is on its way
// (IsBusy). The widgets are named as their controls, and follow each other as those do.
class FormView final : public QWidget, private FormRenderer, private ViewHost {
 public:
  FormView(Form& form, QWidget* parent);
  ~FormView() override;

  // The widget that shows a control (of a TabPanel its page); nullptr for what has none (timers).
  QWidget* WidgetOf(const FormControl& control) const override;

  using ViewHost::onFailure;
  // The dialog was unloaded (modal forms).
  std::function<void()> onUnloaded;

  // The first input that can take the keyboard.
  void FocusFirst();
  // By the window's own button.
  void UserClosesWindow();

  using ViewHost::IsBusy;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  // FormRenderer
  void ControlChanged(FormControl& control, Aspect aspect) override;
  void ItemChanged(PropertyGridItem& item) override;
  void FormUnloaded() override;

  // ViewHost
  void CallForReport() override;

  void Build(Container& container, QWidget& parent);
  void SetUp(FormControl& control, QWidget& widget, bool placed);
  void ShowAll();
  ControlView& ViewOf(const FormControl& control) const;
  FormControl* ControlOf(const QWidget* widget) const;
  void FocusMoved(const QWidget* now);
  bool HasFocusWidget() const;
  bool PressButton(CommandButton::Role role);

  std::vector<std::pair<FormControl*, std::unique_ptr<ControlView>>> views_;  // in tab order
  std::unordered_map<const FormControl*, ControlView*> byControl_;
  std::unordered_map<const QWidget*, FormControl*> byWidget_;
};

}  // namespace kvo
