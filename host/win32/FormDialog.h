#pragma once

#include <windows.h>

#include "host/win32/FormWindow.h"

namespace kvo {

// The window of a modal form. Closes only when the form is unloaded.
class FormDialog final : private OwnWindow {
 public:
  // Creates the hidden dialog over the window `owner`, which may be nullptr.
  FormDialog(Form& form, HWND owner);
  ~FormDialog() override;

  HWND Window() const { return Handle(); }
  FormWindow& View() { return *view_; }

  // Shows the dialog and focuses its first input.
  void Show();
  // Shows it, with its owner disabled, until the form is unloaded.
  void Run();
  // Makes Run return, as if the form had been unloaded.
  void EndRun() { ended_ = true; }
  // Handles a message if the dialog uses it; returns false if the caller must dispatch it.
  bool Translate(MSG& message);

 private:
  LRESULT Message(UINT message, WPARAM wParam, LPARAM lParam) noexcept override;

  HWND owner_;
  std::unique_ptr<FormWindow> view_;
  HWND focused_ = nullptr;  // when the dialog was last active
  bool ended_ = false;
};

}  // namespace kvo
