// Lambdas as functions that Windows calls: for 32 bit these have a calling convention of their own,
// into which GCC converts no lambda.
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

// The lambda captures nothing.
template <class Lambda>
auto* Callback(Lambda lambda) {
  return CallbackOf<Lambda>(+lambda);
}

}  // namespace kvo
