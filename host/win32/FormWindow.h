#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include "host/win32/ControlView.h"
#include "host/win32/OwnWindow.h"

namespace kvo {

// Shows one form with the windows of the system; ends before it, and not while a user action is on
// its way (IsBusy). The windows follow each other as the controls do.
class FormWindow final : private FormRenderer, private ViewHost, private OwnWindow {
 public:
  // A child of `parent` at 0, 0, as large as the form, hidden.
  FormWindow(Form& form, HWND parent);
  ~FormWindow() override;

  // The form's window; nullptr once its parent has ended it.
  HWND Window() const override { return Handle(); }
  // The window that shows a control; nullptr for what has none (timers).
  HWND WindowOf(const FormControl& control) const override;
  // The control whose window this is, or in whose it lies; nullptr when there is none.
  FormControl* ControlOf(HWND window) const;

  // Of a whole form, at the resolution of the screen.
  static SIZE PixelSize(const Form& form);

  using ViewHost::onFailure;
  // The dialog was unloaded (modal forms).
  std::function<void()> onUnloaded;

  // The first and the last input that can take the keyboard.
  void FocusFirst();
  void FocusLast();
  // Brings the keyboard to a control, as the tab key does.
  void Enter(const FormControl& control);
  // A message on its way to the form: whether it was a key that means something to the form, and
  // is done with. The tab key beyond the last input, or back beyond the first, is left to the host.
  bool TranslateKey(MSG& message);
  // By the window's own button.
  void UserClosesWindow();

  using ViewHost::IsBusy;

 private:
  // FormRenderer
  void ControlChanged(FormControl& control, Aspect aspect) override;
  void ItemChanged(PropertyGridItem& item) override;
  void FormUnloaded() override;

  // ViewHost
  void CallForReport() override;
  // Nothing is left to be brought in step once the parent has ended the windows.
  void Update(const std::function<void()>& change) override;
  bool IsEntering() const override { return entering_ > 0; }
  void Watch(HWND window) override;
  void CallLater(HWND window) override;

  // OwnWindow
  LRESULT Message(UINT message, WPARAM wParam, LPARAM lParam) noexcept override;

  void Build(Container& container, HWND parent, POINT origin);
  void ShowAll();
  ControlView& ViewOf(const FormControl& control) const;
  ControlView* ViewAt(HWND window) const;
  void FocusEntered(HWND window);
  void FocusLeft(HWND to);
  void HandFocusOn();
  // What the tab key goes through, and `also`.
  std::vector<FormControl*> TabStops(const FormControl* also) const;
  bool MoveFocus(bool backwards);
  bool PressButton(CommandButton::Role role);

  std::vector<std::pair<FormControl*, std::unique_ptr<ControlView>>> views_;  // in tab order
  std::unordered_map<const FormControl*, ControlView*> byControl_;
  std::unordered_map<HWND, FormControl*> byWindow_;
  std::vector<std::unique_ptr<WindowHook>> watched_;
  int entering_ = 0;
};

}  // namespace kvo
