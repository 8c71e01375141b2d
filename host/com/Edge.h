// The edge between exceptions and result codes. No exception leaves the library, and no result code
// of a caller or host goes unnoticed inside it.
#pragma once

#include <concepts>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include "host/com/Ole.h"

namespace kvo::com {

// A call to the host, or to an object of the host's, failed. Goes back over the edge as it came.
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
  std::string source_;       // empty: this library
};

// HostFailure for a failing code, with what the failing object has left as error information.
void Check(HRESULT code);

// What is told about a failure: a run-time error as 0x800A0000 + its number, a host's failure with
// the host's own code, lack of memory as E_OUTOFMEMORY, anything else as E_FAIL.
struct Failure {
  HRESULT code = E_FAIL;
  std::wstring description;
  std::wstring source;
};

// The exception that is being caught. `source` stands for objects of this library.
Failure CaughtFailure(std::wstring_view source) noexcept;
// Leaves it for the caller as error information, and answers its code.
HRESULT Report(const Failure& failure) noexcept;

// Runs the body of an interface's method. This is the one place where exceptions end. A body that
// returns nothing is S_OK.
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

// Out parameters are set before anything else can fail. False when one is missing (E_POINTER).
template <class... Out>
bool Clear(Out*... out) {
  const bool all = (... && (out != nullptr));
  ((out != nullptr ? void(*out = Out{}) : void()), ...);
  return all;
}

}  // namespace kvo::com
