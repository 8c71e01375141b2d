#pragma once

#include <windows.h>

#include "host/win32/ControlView.h"
#include "host/win32/OwnWindow.h"

namespace kvo {

// Shows one form with the windows of the system, which follow each other as the controls do.
class FormWindow final : public FormViews<ControlView, ViewHost>, private OwnWindow {
 public:
  // A child of `parent` at 0, 0, as large as the form, hidden.
  FormWindow(Form& form, HWND parent);
  ~FormWindow() override;

  // The form's window; nullptr once its parent has ended it.
  HWND Window() const override { return Handle(); }
  HWND WidgetOf(const FormControl& control) const override;

  // Of a whole form, at the resolution of the screen.
  static SIZE PixelSize(const Form& form);

  // The last input that can take the keyboard.
  void FocusLast();
  // Brings the keyboard to a control, as the tab key does.
  void Enter(const FormControl& control);
  // A message on its way to the form: whether it was a key that means something to the form, and
  // is done with. The tab key beyond the last input, or back beyond the first, is left to the host.
  bool TranslateKey(MSG& message);

 private:
  // FormViews
  std::unique_ptr<ControlView> MakeView(FormControl& control, HWND parent) override;
  void SetUp(FormControl& control, ControlView& view, const ControlView* around) override;
  HWND ParentOf(HWND window) const override { return GetAncestor(window, GA_PARENT); }
  bool HasFocus() const override { return IsChild(Handle(), GetFocus()); }
  void HandFocusOn() override;

  // ViewHost
  void CallForReport() override;
  // Nothing is left to be brought in step once the parent has ended the windows.
  void Update(const std::function<void()>& change) override;
  bool IsEntering() const override { return entering_ > 0; }
  void Watch(HWND window) override;
  void CallLater(HWND window) override;

  // OwnWindow
  LRESULT Message(UINT message, WPARAM wParam, LPARAM lParam) noexcept override;

  ControlView* ViewAt(HWND window) const;
  void FocusEntered(HWND window);
  void FocusLeft(HWND to);
  void FocusMayHaveGone();
  // What the tab key goes through, and `also`.
  std::vector<FormControl*> TabStops(const FormControl* also) const;
  bool MoveFocus(bool backwards);

  std::vector<std::unique_ptr<WindowHook>> watched_;
  int entering_ = 0;
};

}  // namespace kvo
