#pragma once

#include "common/frame/Platform.h"

namespace kvo {

// What Windows' own desktop does for the controls and pages. Its dialogs stand over the window of
// the thread that is active.
class Win32Platform : public Platform {
 public:
  void ShowMessage(WindowHandle owner, std::string_view text) override;
  std::optional<std::string> InputPrompt(std::string_view prompt, std::string_view title) override;
  void ShowModal(Form& form) override;
  ColorNumber ChooseColor(ColorNumber preset) override;
  KeyStates KeyboardState() override;
  // The same on every machine: boxes are stored with their size.
  int TextWidth(std::string_view text, FontWeight weight) override;
};

}  // namespace kvo
