#include "host/win32/ShownText.h"

#include <algorithm>

#include "host/win32/WideText.h"

namespace kvo {
namespace {

constexpr char16_t kSymbolForBreak = 0xB6;

std::u16string Show(std::string_view character, Lines lines) {
  if (character == "\r" || character == "\n")
    return lines == Lines::many ? u"\r\n" : std::u16string(1, kSymbolForBreak);
  std::u16string units = ToUnits(ToWide(character));
  std::ranges::replace(units, u'\0', kSymbolForNull);
  return units;
}

// Typed line breaks are CR LF already.
std::string Typed(std::u16string_view units, Lines) {
  return FromWide(std::wstring(units.begin(), units.end()));
}

}  // namespace

const TextStyle kWindowStyle = {.show = Show, .joinsCrLfInLine = true, .typed = Typed};

std::u16string ToUnits(std::wstring_view text) { return {text.begin(), text.end()}; }

std::wstring WithWindowsBreaks(std::wstring_view text) {
  std::wstring out;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != L'\r' && text[at] != L'\n') {
      out += text[at];
      continue;
    }
    out += L"\r\n";
    if (text[at] == L'\r' && at + 1 < text.size() && text[at + 1] == L'\n') ++at;
  }
  return out;
}

}  // namespace kvo
