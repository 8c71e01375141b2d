#include "host/win32/WideText.h"

namespace kvo {
namespace {

constexpr bool IsHigh(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
constexpr bool IsLow(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

void AppendWide(std::wstring& out, char32_t character) {
  if (character >= 0x10000) {
    out += static_cast<wchar_t>(0xD800 + ((character - 0x10000) >> 10));
    out += static_cast<wchar_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
  } else {
    out += static_cast<wchar_t>(character);
  }
}

void AppendUtf8(std::string& out, char32_t character) {
  const auto byte = [&out](char32_t bits) { out += static_cast<char>(bits); };
  if (character < 0x80) return byte(character);
  if (character < 0x800) {
    byte(0xC0 | (character >> 6));
  } else {
    if (character < 0x10000) {
      byte(0xE0 | (character >> 12));
    } else {
      byte(0xF0 | (character >> 18));
      byte(0x80 | ((character >> 12) & 0x3F));
    }
    byte(0x80 | ((character >> 6) & 0x3F));
  }
  byte(0x80 | (character & 0x3F));
}

}  // namespace

std::wstring ToWide(std::string_view text) {
  std::wstring out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(at);
    const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t character = length == 1 ? lead : lead & (0x7F >> length);
    bool whole = lead < 0x80 || (length > 1 && at + length <= text.size());
    for (std::size_t i = 1; whole && i < length; ++i) {
      whole = (byte(at + i) & 0xC0) == 0x80;
      character = character << 6 | (byte(at + i) & 0x3F);
    }
    if (whole && character <= 0x10FFFF) {
      AppendWide(out, character);
      at += length;
    } else {
      out += L'\xFFFD';  // invalid UTF-8
      ++at;
    }
  }
  return out;
}

std::string FromWide(std::wstring_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    char32_t character = text[at];
    if (IsHigh(character) && at + 1 < text.size() && IsLow(text[at + 1]))
      character = 0x10000 + ((character - 0xD800) << 10) + (text[++at] - 0xDC00u);
    AppendUtf8(out, character);
  }
  return out;
}

}  // namespace kvo
