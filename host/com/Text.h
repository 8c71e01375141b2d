// The texts of automation (BSTR) and of the task allocator.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "host/com/Ole.h"

namespace kvo::com {

// An owned BSTR; null is the empty text.
class Bstr {
 public:
  Bstr() = default;
  // std::bad_alloc when there is no memory.
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

// With NULs, if there are any. Null is the empty text.
std::wstring_view ViewBstr(BSTR text);

// A copy that the caller frees with CoTaskMemFree.
wchar_t* TaskText(std::wstring_view text);

// In registry form: braces, upper case.
std::wstring GuidString(const GUID& guid);
// Of a text in registry form that is known to be one.
GUID ToGuid(std::string_view text);

}  // namespace kvo::com
