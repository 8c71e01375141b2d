#include "host/com/Text.h"

#include <algorithm>
#include <limits>
#include <new>

#include "host/com/Ole.h"
#include "host/win32/WideText.h"

namespace kvo::com {

Bstr::Bstr(std::string_view utf8) : Bstr(std::wstring_view(ToWide(utf8))) {}

Bstr::Bstr(std::wstring_view text) {
  if (text.size() > std::numeric_limits<UINT>::max() / sizeof(wchar_t)) throw std::bad_alloc();
  text_ = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (text_ == nullptr) throw std::bad_alloc();
}

std::string Bstr::Utf8() const { return FromWide(ViewBstr(text_)); }

std::wstring_view ViewBstr(BSTR text) {
  return text == nullptr ? std::wstring_view() : std::wstring_view(text, SysStringLen(text));
}

wchar_t* TaskText(std::wstring_view text) {
  auto* copy = static_cast<wchar_t*>(CoTaskMemAlloc((text.size() + 1) * sizeof(wchar_t)));
  if (copy == nullptr) throw std::bad_alloc();
  *std::ranges::copy(text, copy).out = L'\0';
  return copy;
}

std::wstring GuidString(const GUID& guid) {
  wchar_t text[39];
  StringFromGUID2(guid, text, 39);
  return text;
}

GUID ToGuid(std::string_view text) {
  GUID guid{};
  IIDFromString(ToWide(text).c_str(), &guid);
  return guid;
}

}  // namespace kvo::com
