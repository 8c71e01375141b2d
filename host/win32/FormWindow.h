#pragma once

#include <windows.h>

#include "host/win32/ControlView.h"
#include "host/win32/OwnWindow.h"

namespace kvo {

// Shows one form with native windows, in the order of the controls.
class FormWindow final : public FormViews<ControlView, ViewHost>, private OwnWindow {
 public:
  // Creates a hidden child of `parent` at 0, 0, as large as the form.
  FormWindow(Form& form, HWND parent);
  ~FormWindow() override;

  // The form's window; nullptr once its parent has destroyed it.
  HWND Window() const override { return Handle(); }
  HWND WidgetOf(const FormControl& control) const override;

  // The size of a form at the screen's resolution.
  static SIZE PixelSize(const Form& form);

  // Moves the focus to the last input that can take it.
  void FocusLast();
  // Moves the focus to a control, as the Tab key does.
  void Enter(const FormControl& control);
  // Handles a message if it is a key that the form uses. Returns false for others, and for the Tab
  // key past the last input, or back past the first, which is left to the host.
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
  // Does nothing once the parent has destroyed the windows.
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
  // The controls at which the Tab key stops, and `also`.
  std::vector<FormControl*> TabStops(const FormControl* also) const;
  bool MoveFocus(bool backwards);

  std::vector<std::unique_ptr<WindowHook>> watched_;
  int entering_ = 0;
};

}  // namespace kvo
