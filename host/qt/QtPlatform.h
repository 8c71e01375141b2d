#pragma once

#include <QString>
#include <functional>

#include "common/forms/PropertyFrame.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo {

// The platform of desktop programs. Needs a QApplication. Shows its dialogs over the active window.
class QtPlatform : public ProgramPlatform {
 public:
  // `pages` creates the pages of the property frames.
  explicit QtPlatform(PageFactory pages) : pages_(std::move(pages)) {}

  // Passed to the property frames.
  std::function<void()> onApplied;
  QString frameNote;

  void ShowMessage(WindowHandle owner, std::string_view text) override;
  std::optional<std::string> InputPrompt(std::string_view prompt, std::string_view title) override;
  void ShowModal(Form& form) override;
  ColorNumber ChooseColor(ColorNumber preset) override;
  // Reports the mouse buttons and the Shift, Ctrl and Alt keys only.
  KeyStates KeyboardState() override;
  // `owner` is the winId of a widget's window.
  void ShowPropertyFrame(WindowHandle owner, std::string_view caption, ObjectRef object,
                         const std::vector<std::string>& pages) override;

 private:
  PageFactory pages_;
};

}  // namespace kvo
