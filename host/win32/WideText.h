// Text at the edge to Windows: UTF-8 here, UTF-16 there, and back without loss. An unpaired
// surrogate is carried as the three bytes that UTF-8 would give its number.
#pragma once

#include <string>
#include <string_view>

namespace kvo {

std::wstring ToWide(std::string_view text);
std::string FromWide(std::wstring_view text);

}  // namespace kvo
