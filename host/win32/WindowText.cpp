#include "host/win32/WindowText.h"

#include <algorithm>

#include "common/forms/ShownText.h"
#include "host/win32/WideText.h"

namespace kvo {

std::wstring ToWindowText(std::string_view text) {
  std::wstring wide = ToWide(text);
  std::ranges::replace(wide, L'\0', static_cast<wchar_t>(kSymbolForNull));
  return wide;
}

std::wstring ToWindowCaption(std::string_view caption) {
  std::wstring doubled;
  for (const wchar_t c : ToWindowText(caption)) doubled.append(c == L'&' ? 2 : 1, c);
  return doubled;
}

std::wstring TextOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)), L'\0');
  const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()) + 1);
  text.resize(static_cast<std::size_t>(length));
  return text;
}

}  // namespace kvo
