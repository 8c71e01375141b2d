#pragma once

#include <windows.h>

#include "host/win32/FormWindow.h"

namespace kvo {

// The window of a modal form. It closes when the form is unloaded, and not before.
class FormDialog final : private OwnWindow {
 public:
  // Over the window `owner`, which may be nullptr; hidden.
  FormDialog(Form& form, HWND owner);
  ~FormDialog() override;

  HWND Window() const { return Handle(); }
  FormWindow& View() { return *view_; }

  // Shows the dialog and the user what is to be done first.
  void Show();
  // Shows it until the form is unloaded; nobody can use the owner meanwhile.
  void Run();
  // Has Run return, as an unloaded form has.
  void EndRun() { ended_ = true; }
  // Whether the dialog can do something with a message; what it cannot is to be dispatched.
  bool Translate(MSG& message);

 private:
  LRESULT Message(UINT message, WPARAM wParam, LPARAM lParam) noexcept override;

  HWND owner_;
  std::unique_ptr<FormWindow> view_;
  HWND focused_ = nullptr;  // when the dialog was last active
  bool ended_ = false;
};

}  // namespace kvo
