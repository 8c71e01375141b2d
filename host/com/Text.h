// Texts for automation (BSTR) and from the task allocator.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "host/com/Ole.h"

namespace kvo::com {

// An owned BSTR. Null is the empty text.
class Bstr {
 public:
  Bstr() = default;
  // Throws std::bad_alloc when out of memory.
  explicit Bstr(std::string_view utf8);
  explicit Bstr(std::wstring_view text);
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  ~Bstr() { SysFreeString(text_); }

  BSTR get() const { return text_; }
  BSTR Detach() { return std::exchange(text_, nullptr); }
  BSTR* Receive() {
    SysFreeString(Detach());
    return &text_;
  }
  std::string Utf8() const;

 private:
  BSTR text_ = nullptr;
};

// Views the whole text, including any NULs. Null is the empty text.
std::wstring_view ViewBstr(BSTR text);

// Copies a text; the caller frees it with CoTaskMemFree.
wchar_t* TaskText(std::wstring_view text);

// Returns the registry form: in braces and upper case.
std::wstring GuidString(const GUID& guid);
// Parses a valid text in registry form.
GUID ToGuid(std::string_view text);

}  // namespace kvo::com
