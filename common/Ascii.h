// Comparisons that fold the letters A to Z only, as names of members, classes and tags want it.
#pragma once

#include <algorithm>
#include <string_view>

namespace kvo {

constexpr char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

constexpr bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, LowerAscii, LowerAscii);
}

}  // namespace kvo
