#include "host/win32/Messages.h"

#include "host/registration/classes.h"
#include "host/win32/WideText.h"
#include "host/win32/WindowText.h"

namespace kvo {

Language DesktopLanguage() {
  return PRIMARYLANGID(GetUserDefaultUILanguage()) == LANG_GERMAN ? Language::german
                                                                  : Language::english;
}

void ShowMessageBox(HWND owner, std::string_view text) {
  MessageBoxW(owner, ToWindowText(text).c_str(), ToWide(kLibraryName).c_str(),
              MB_OK | MB_ICONINFORMATION | MB_APPLMODAL);
}

}  // namespace kvo
