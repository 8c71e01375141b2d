#pragma once

#include <string_view>

namespace kvo {

// "1.0.0 (60542aa)": the version, and the commit if that was known when the program was built.
std::string_view ProgramVersion();

}  // namespace kvo
