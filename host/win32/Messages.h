// What the desktop says to the user.
#pragma once

#include <windows.h>

#include <exception>
#include <string_view>

#include "common/Localized.h"

namespace kvo {

// The language of the user's desktop.
Language DesktopLanguage();

// A failure as it is shown.
std::string FailureText(const std::exception& failure);

// A message box under the component's title; returns when it was answered.
void ShowMessageBox(HWND owner, std::string_view text);

}  // namespace kvo
