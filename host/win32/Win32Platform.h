#pragma once

#include "common/frame/Platform.h"

namespace kvo {

// The platform on the Windows desktop. Shows its dialogs over the thread's active window.
class Win32Platform : public Platform {
 public:
  void ShowMessage(WindowHandle owner, std::string_view text) override;
  std::optional<std::string> InputPrompt(std::string_view prompt, std::string_view title) override;
  void ShowModal(Form& form) override;
  ColorNumber ChooseColor(ColorNumber preset) override;
  KeyStates KeyboardState() override;
  // Equal on every machine, because boxes are stored with their size.
  int TextWidth(std::string_view text, FontWeight weight) override;
};

}  // namespace kvo
