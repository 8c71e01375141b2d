// Converts between exceptions and result codes. No exception leaves the library, and no result code
// from a caller or host is ignored in it.
#pragma once

#include <concepts>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include "host/com/Ole.h"

namespace kvo::com {

// A failed call to the host or one of its objects. Returned to the caller with the same code.
class HostFailure : public std::exception {
 public:
  explicit HostFailure(HRESULT code, std::string description = {}, std::string source = {});

  HRESULT Code() const { return code_; }
  const std::string& Description() const { return description_; }
  const std::string& Source() const { return source_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  HRESULT code_;
  std::string description_;  // in the user's language; never empty
  std::string source_;       // empty for this library
};

// Throws HostFailure for a failure code, with the error information of the failing object.
void Check(HRESULT code);

// A failure as reported to callers. The code is 0x800A0000 + the number for a runtime error, the
// host's own code for a host failure, E_OUTOFMEMORY when out of memory, otherwise E_FAIL.
struct Failure {
  HRESULT code = E_FAIL;
  std::wstring description;
  std::wstring source;
};

// Converts the current exception. `source` names objects of this library.
Failure CaughtFailure(std::wstring_view source) noexcept;
// Sets it as the thread's error information and returns its code.
HRESULT Report(const Failure& failure) noexcept;

// Runs the body of an interface method: the only place where exceptions end. Returns S_OK for a
// body that returns nothing.
template <class Body>
HRESULT Boundary(std::wstring_view source, Body&& body) noexcept {
  try {
    if constexpr (std::same_as<decltype(body()), void>) {
      body();
      return S_OK;
    } else {
      return body();
    }
  } catch (...) {
    return Report(CaughtFailure(source));
  }
}

// Clears the out parameters, which must happen before anything can fail. Returns false when one is
// null (E_POINTER).
template <class... Out>
bool Clear(Out*... out) {
  const bool all = (... && (out != nullptr));
  ((out != nullptr ? void(*out = Out{}) : void()), ...);
  return all;
}

}  // namespace kvo::com
