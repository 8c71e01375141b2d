// The texts of windows.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace kvo {

// A text for what ends its texts at the first NUL: a symbol stands for each.
std::wstring ToWindowText(std::string_view text);
// The same for buttons and tabs, which take a "&" for the mark of an access key.
std::wstring ToWindowCaption(std::string_view caption);

std::wstring TextOf(HWND window);

}  // namespace kvo
