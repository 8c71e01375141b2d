#include "host/win32/InputDialog.h"

#include "common/forms/Form.h"
#include "host/desktop/Words.h"
#include "host/win32/FormDialog.h"

namespace kvo {
namespace {

// The prompt as a form. Its texts must outlive it.
class InputForm final : public Form {
 public:
  InputForm(std::string_view prompt, std::string_view title)
      : Form(title, {5400, 1560}), prompt_(prompt) {}

  std::optional<std::string> answer;
  std::function<void()> onEnd;

 private:
  void Closing() override { onEnd(); }

  std::string_view prompt_;
  KVO_CONTROL(Label, lblPrompt, .caption = prompt_, .at = {180, 150, 5040, 420}, .wraps = true);
  KVO_CONTROL(TextBox, txtAnswer, .at = {180, 600, 5040, 300});
  KVO_CONTROL(
      CommandButton, cmdOk, .caption = kOk.In(UserLanguage()), .at = {2520, 1050, 1290, 360},
      .role = CommandButton::Role::acceptsDialog, .onClick = [this](CommandButton&) {
        answer = txtAnswer.Text();
        onEnd();
      });
  KVO_CONTROL(
      CommandButton, cmdCancel, .caption = kCancel.In(UserLanguage()),
      .at = {3930, 1050, 1290, 360}, .role = CommandButton::Role::cancelsDialog,
      .onClick = [this](CommandButton&) { onEnd(); });
};

}  // namespace

std::optional<std::string> AskForLine(HWND owner, std::string_view prompt, std::string_view title) {
  InputForm form(prompt, title);
  FormDialog dialog(form, owner);
  form.onEnd = [&dialog] { dialog.EndRun(); };
  dialog.Run();
  return std::move(form.answer);
}

}  // namespace kvo
