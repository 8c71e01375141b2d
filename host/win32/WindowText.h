// Converts texts for windows, and reads them.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace kvo {

// Replaces each NUL by a symbol, because Windows ends texts there.
std::wstring ToWindowText(std::string_view text);
// Also doubles each "&", for buttons and tabs, which take it as the mark of an access key.
std::wstring ToWindowCaption(std::string_view caption);

std::wstring TextOf(HWND window);

}  // namespace kvo
