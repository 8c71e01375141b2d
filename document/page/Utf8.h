// Reads and writes single UTF-8 characters.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kvo::page {

inline constexpr char32_t kReplacementCharacter = 0xFFFD;

// The character at the start of a text. Length 0 when the text is empty or does not begin with
// valid UTF-8 (overlong, a surrogate, beyond U+10FFFF, or truncated).
struct Utf8Character {
  char32_t character = 0;
  std::size_t length = 0;
};

Utf8Character FirstUtf8Character(std::string_view text);

void AppendUtf8(std::string& text, char32_t character);

// Returns how many leading bytes are ASCII.
std::size_t AsciiPrefix(std::string_view text);

// Returns the offset of the first byte that is not valid UTF-8; npos when all is valid.
std::size_t FindInvalidUtf8(std::string_view text);

}  // namespace kvo::page
