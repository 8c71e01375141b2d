#include <cstdint>
#include <span>

#include "common/frame/DesignBox.h"
#include "host/headless/HeadlessPlatform.h"
#include "host/headless/TahomaAdvances.h"

namespace kvo {
namespace {

constexpr int kPixelsPerEm = 11;  // 8.25 point at 96 dpi
constexpr char32_t kReplacement = 0xFFFD;

// Reads the character at `at` and advances `at`. A byte that begins no valid character counts as
// one replacement character.
char32_t NextCharacter(std::string_view text, std::size_t& at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned first = byte(at++);
  if (first < 0x80) return first;
  const std::size_t more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
  if (first < 0xC2 || first > 0xF4 || text.size() - at < more) return kReplacement;
  char32_t code = first & (0x3FU >> more);
  for (std::size_t i = 0; i < more; ++i) {
    if ((byte(at + i) & 0xC0U) != 0x80) return kReplacement;
    code = (code << 6) | (byte(at + i) & 0x3FU);
  }
  at += more;
  return code;
}

// Combining marks and invisible characters have no width.
bool IsZeroWidth(char32_t code) {
  return (code >= 0x0300 && code < 0x0370) || (code >= 0x200B && code < 0x2010) || code == 0xFEFF;
}

// Scripts whose characters are as wide as they are high.
bool IsWide(char32_t code) {
  return (code >= 0x1100 && code < 0x1160) || (code >= 0x2E80 && code < 0xD7A4) ||
         (code >= 0xF900 && code < 0xFB00) || (code >= 0xFE30 && code < 0xFE70) ||
         (code >= 0xFF00 && code < 0xFF61) || (code >= 0x1F300 && code < 0x1FB00) ||
         (code >= 0x20000 && code < 0x40000);
}

unsigned Advance(std::span<const tahoma::Row> font, char32_t code) {
  if (IsZeroWidth(code)) return 0;
  for (const tahoma::Row& row : font)
    if (code - row.first < std::size(row.advances)) return row.advances[code - row.first];
  if (tahoma::IsMeasured(code) || IsWide(code)) return tahoma::kUnitsPerEm;
  return Advance(font, U'n');  // other alphabets are about as wide as Latin
}

}  // namespace

int TahomaTextWidth(std::string_view text, FontWeight weight) {
  const std::span<const tahoma::Row> font =
      weight == FontWeight::bold ? std::span(tahoma::kBold) : std::span(tahoma::kRegular);
  std::uint64_t units = 0;
  for (std::size_t at = 0; at < text.size();) units += Advance(font, NextCharacter(text, at));
  // Limits the width, so that sums in the layout cannot overflow.
  constexpr std::uint64_t kMostPixels = 10'000'000;
  const std::uint64_t pixels =
      (units * kPixelsPerEm + tahoma::kUnitsPerEm - 1) / tahoma::kUnitsPerEm;
  return static_cast<int>(pixels < kMostPixels ? pixels : kMostPixels) * kTwipsPerPixel;
}

}  // namespace kvo
