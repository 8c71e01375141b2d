#include "document/page/Utf8.h"

#include <cstdint>
#include <cstring>

namespace kvo::page {

Utf8Character FirstUtf8Character(std::string_view text) {
  if (text.empty()) return {};
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return {lead, 1};

  std::size_t length = 0;
  char32_t smallest = 0;
  char32_t character = 0;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2, smallest = 0x80, character = lead & 0x1FU;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3, smallest = 0x800, character = lead & 0x0FU;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4, smallest = 0x10000, character = lead & 0x07U;
  } else {
    return {};
  }
  if (text.size() < length) return {};
  for (std::size_t at = 1; at < length; ++at) {
    if ((byte(at) & 0xC0U) != 0x80) return {};
    character = character << 6U | (byte(at) & 0x3FU);
  }
  const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
  if (character < smallest || character > 0x10FFFF || surrogate) return {};
  return {character, length};
}

void AppendUtf8(std::string& text, char32_t character) {
  const auto append = [&](char32_t byte) { text += static_cast<char>(byte); };
  if (character < 0x80) {
    append(character);
  } else if (character < 0x800) {
    append(0xC0 | character >> 6);
    append(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    append(0xE0 | character >> 12);
    append(0x80 | (character >> 6 & 0x3F));
    append(0x80 | (character & 0x3F));
  } else {
    append(0xF0 | character >> 18);
    append(0x80 | (character >> 12 & 0x3F));
    append(0x80 | (character >> 6 & 0x3F));
    append(0x80 | (character & 0x3F));
  }
}

std::size_t AsciiPrefix(std::string_view text) {
  std::size_t at = 0;
  for (; at + 8 <= text.size(); at += 8) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, text.data() + at, 8);
    if ((eight & 0x8080808080808080U) != 0) break;
  }
  while (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80) ++at;
  return at;
}

std::size_t FindInvalidUtf8(std::string_view text) {
  for (std::size_t at = 0;;) {
    at += AsciiPrefix(text.substr(at));
    if (at == text.size()) return std::string_view::npos;
    const std::size_t length = FirstUtf8Character(text.substr(at)).length;
    if (length == 0) return at;
    at += length;
  }
}

}  // namespace kvo::page
