#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

namespace kvo {

// Asks for one line of text in a modal dialog. Returns nothing when the user cancels.
std::optional<std::string> AskForLine(HWND owner, std::string_view prompt, std::string_view title);

}  // namespace kvo
