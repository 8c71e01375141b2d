// Character tests for the names of members, classes and tags: only A to Z count as letters, and
// only they compare equal in both cases.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace kvo {

constexpr char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

inline std::string Lowered(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), LowerAscii);
  return lower;
}

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsLetter(char c) {
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'z';
}
constexpr bool IsHexDigit(char c) {
  const char lower = LowerAscii(c);
  return IsDigit(c) || (lower >= 'a' && lower <= 'f');
}

constexpr bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  // The common cases first: the same spelling, or another size.
  return a.size() == b.size() &&
         (a == b || std::equal(a.begin(), a.end(), b.begin(),
                               [](char x, char y) { return LowerAscii(x) == LowerAscii(y); }));
}

}  // namespace kvo
