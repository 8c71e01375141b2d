// How Windows' edit boxes show texts.
#pragma once

#include <string>
#include <string_view>

#include "common/forms/ShownText.h"

namespace kvo {

// Shows each line break (CR LF, CR or LF) as CR LF with Lines::many, as one symbol with Lines::one,
// and a NUL as a symbol.
extern const TextStyle kWindowStyle;

std::u16string ToUnits(std::wstring_view text);

// Converts every line break to CR LF, for a box with several lines.
std::wstring WithWindowsBreaks(std::wstring_view text);

}  // namespace kvo
