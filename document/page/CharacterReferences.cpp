#include "document/page/CharacterReferences.h"

#include <algorithm>
#include <array>

#include "common/values/Ascii.h"
#include "document/page/Utf8.h"

namespace kvo::page {
namespace {

struct NamedReference {
  char name[33];  // without the "&"; in place, so that the table needs no pointers
  std::array<char32_t, 2> characters;
};

constexpr NamedReference kNamed[] = {
#include "document/page/character_references.inc"
};

constexpr std::size_t kLongestName = sizeof(NamedReference::name) - 1;

constexpr std::string_view NameOf(const NamedReference& row) { return row.name; }
static_assert(std::is_sorted(std::begin(kNamed), std::end(kNamed),
                             [](const NamedReference& a, const NamedReference& b) {
                               return NameOf(a) < NameOf(b);
                             }));

// The characters for the numbers 0x80 to 0x9F: those of windows-1252, where it has one.
constexpr std::array<char32_t, 32> kC1 = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

char32_t CharacterOfNumber(char32_t number) {
  if (number == 0 || number > 0x10FFFF || (number >= 0xD800 && number <= 0xDFFF))
    return kReplacementCharacter;
  if (number >= 0x80 && number <= 0x9F) return kC1[number - 0x80];
  return number;
}

// `text` begins with "&#".
std::size_t AppendNumber(std::string_view text, std::string& utf8) {
  std::size_t at = 2;
  const bool hexadecimal = at < text.size() && LowerAscii(text[at]) == 'x';
  if (hexadecimal) ++at;
  const std::size_t digits = at;
  char32_t number = 0;
  for (; at < text.size(); ++at) {
    const char c = LowerAscii(text[at]);
    char32_t digit = 0;
    if (IsDigit(c)) {
      digit = static_cast<char32_t>(c - '0');
    } else if (hexadecimal && c >= 'a' && c <= 'f') {
      digit = static_cast<char32_t>(c - 'a' + 10);
    } else {
      break;
    }
    if (number <= 0x10FFFF) number = number * (hexadecimal ? 16 : 10) + digit;
  }
  if (at == digits) return 0;
  AppendUtf8(utf8, CharacterOfNumber(number));
  return at < text.size() && text[at] == ';' ? at + 1 : at;
}

// Finds the longest name that the text begins with; nullptr when there is none.
const NamedReference* LongestName(std::string_view text) {
  text = text.substr(0, kLongestName);
  std::size_t length = 0;
  while (length < text.size() && (IsLetter(text[length]) || IsDigit(text[length]))) ++length;
  if (length < text.size() && text[length] == ';') ++length;
  for (; length > 0; --length) {
    const std::string_view name = text.substr(0, length);
    const auto* row = std::lower_bound(
        std::begin(kNamed), std::end(kNamed), name,
        [](const NamedReference& each, std::string_view wanted) { return NameOf(each) < wanted; });
    if (row != std::end(kNamed) && NameOf(*row) == name) return row;
  }
  return nullptr;
}

}  // namespace

std::size_t AppendCharacterReference(std::string_view text, std::string& utf8, ReferenceIn place) {
  if (text.size() > 1 && text[1] == '#') return AppendNumber(text, utf8);
  const NamedReference* row = LongestName(text.substr(1));
  if (row == nullptr) return 0;
  const std::size_t length = 1 + NameOf(*row).size();
  if (place == ReferenceIn::value && text[length - 1] != ';' && length < text.size()) {
    const char next = text[length];
    if (next == '=' || IsLetter(next) || IsDigit(next)) return 0;
  }
  for (const char32_t character : row->characters)
    if (character != 0) AppendUtf8(utf8, character);
  return length;
}

}  // namespace kvo::page
