// Converts text between UTF-8 and Windows' UTF-16, losslessly in both directions. An unpaired
// surrogate becomes the three bytes that UTF-8 would use for its number.
#pragma once

#include <string>
#include <string_view>

namespace kvo {

std::wstring ToWide(std::string_view text);
std::string FromWide(std::wstring_view text);

}  // namespace kvo
