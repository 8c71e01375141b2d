// How the edit boxes of Windows show texts.
#pragma once

#include <string>
#include <string_view>

#include "common/forms/ShownText.h"

namespace kvo {

// A line break, which is CR LF, CR or LF, is CR LF with Lines::many, and one sign with Lines::one.
// A NUL has a stand-in.
extern const TextStyle kWindowStyle;

std::u16string ToUnits(std::wstring_view text);

// A text from elsewhere as several lines can take it: every line break is CR LF.
std::wstring WithWindowsBreaks(std::wstring_view text);

}  // namespace kvo
