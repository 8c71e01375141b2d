// Single characters of UTF-8.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kvo::page {

inline constexpr char32_t kReplacementCharacter = 0xFFFD;

// A character at the start of a text; length 0 when the bytes there are not valid UTF-8 (too long
// a form, a surrogate, beyond U+10FFFF, cut off) or the text is empty.
struct Utf8Character {
  char32_t character = 0;
  std::size_t length = 0;
};

Utf8Character FirstUtf8Character(std::string_view text);

void AppendUtf8(std::string& text, char32_t character);

// How many bytes at the start of a text are ASCII.
std::size_t AsciiPrefix(std::string_view text);

// The offset of the first byte that is not part of valid UTF-8; npos when all is valid.
std::size_t FindInvalidUtf8(std::string_view text);

}  // namespace kvo::page
