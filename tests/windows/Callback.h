// Converts lambdas to functions that Windows calls. In 32-bit programs these have their own calling
// convention, which GCC does not convert lambdas to.
#pragma once

#include <windows.h>

namespace kvo {

template <class Lambda, class Result, class... Arguments>
auto* CallbackOf(Result (*)(Arguments...)) {
  struct Function {
    static Result CALLBACK Call(Arguments... arguments) { return Lambda{}(arguments...); }
  };
  return &Function::Call;
}

// The lambda must not capture anything.
template <class Lambda>
auto* Callback(Lambda lambda) {
  return CallbackOf<Lambda>(+lambda);
}

}  // namespace kvo
