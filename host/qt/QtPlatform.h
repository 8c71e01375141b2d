#pragma once

#include <QString>
#include <functional>

#include "common/forms/PropertyFrame.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo {

// The platform of programs with a desktop. Needs a QApplication; its dialogs stand over the window
// that is active.
class QtPlatform : public ProgramPlatform {
 public:
  // `pages` makes the pages of the property frames that it shows.
  explicit QtPlatform(PageFactory pages) : pages_(std::move(pages)) {}

  // Handed to the property frames.
  std::function<void()> onApplied;
  QString frameNote;

  void ShowMessage(WindowHandle owner, std::string_view text) override;
  std::optional<std::string> InputPrompt(std::string_view prompt, std::string_view title) override;
  void ShowModal(Form& form) override;
  ColorNumber ChooseColor(ColorNumber preset) override;
  // Mouse buttons and the shift, control and menu keys; no others.
  KeyStates KeyboardState() override;
  // An owner is the winId of a widget's window.
  void ShowPropertyFrame(WindowHandle owner, std::string_view caption, ObjectRef object,
                         const std::vector<std::string>& pages) override;

 private:
  PageFactory pages_;
};

}  // namespace kvo
