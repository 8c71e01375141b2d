// Messages to the user.
#pragma once

#include <windows.h>

#include <string_view>

#include "common/values/Localized.h"

namespace kvo {

// The desktop's language, which a Windows program sets as the user's language.
Language DesktopLanguage();

// Shows a message box with the component's title; returns when it is closed.
void ShowMessageBox(HWND owner, std::string_view text);

}  // namespace kvo
