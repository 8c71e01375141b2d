// What the desktop says to the user.
#pragma once

#include <windows.h>

#include <string_view>

#include "common/values/Localized.h"

namespace kvo {

// The language of the desktop: what a program of Windows' sets as the user's language.
Language DesktopLanguage();

// A message box under the component's title; returns when it was answered.
void ShowMessageBox(HWND owner, std::string_view text);

}  // namespace kvo
