// The number of the run-time error that something ends with.
#pragma once

#include "common/values/RuntimeError.h"

namespace kvo {

// 0 when it ends without one. Any other exception goes on.
template <class Action>
int ErrorOf(const Action& action) {
  try {
    action();
  } catch (const RuntimeError& error) {
    return error.Number();
  }
  return 0;
}

}  // namespace kvo
