#include "host/win32/Win32Platform.h"

#include <windows.h>

#include <commdlg.h>
#undef ChooseColor  // clashes with Platform::ChooseColor

#include "host/headless/HeadlessPlatform.h"
#include "host/win32/FormDialog.h"
#include "host/win32/InputDialog.h"
#include "host/win32/Messages.h"

namespace kvo {

void Win32Platform::ShowMessage(WindowHandle owner, std::string_view text) {
  const auto window = reinterpret_cast<HWND>(owner);
  ShowMessageBox(IsWindow(window) ? GetAncestor(window, GA_ROOT) : GetActiveWindow(), text);
}

std::optional<std::string> Win32Platform::InputPrompt(std::string_view prompt,
                                                      std::string_view title) {
  return AskForLine(GetActiveWindow(), prompt, title);
}

void Win32Platform::ShowModal(Form& form) {
  FormDialog dialog(form, GetActiveWindow());
  if (form.IsLoaded()) dialog.Run();
}

ColorNumber Win32Platform::ChooseColor(ColorNumber preset) {
  static COLORREF custom[16] = {};  // the user's colours, kept until the program exits
  CHOOSECOLORW dialog{};
  dialog.lStructSize = sizeof(dialog);
  dialog.hwndOwner = GetActiveWindow();
  dialog.rgbResult = static_cast<COLORREF>(preset);
  dialog.lpCustColors = custom;
  dialog.Flags = CC_RGBINIT | CC_FULLOPEN;
  return ChooseColorW(&dialog) ? static_cast<ColorNumber>(dialog.rgbResult) : preset;
}

Platform::KeyStates Win32Platform::KeyboardState() {
  KeyStates keys{};
  GetKeyboardState(keys.data());
  return keys;
}

int Win32Platform::TextWidth(std::string_view text, FontWeight weight) {
  return TahomaTextWidth(text, weight);
}

}  // namespace kvo
