// Returns the number of the run-time error that an action throws.
#pragma once

#include "common/values/RuntimeError.h"

namespace kvo {

// 0 if it throws none. Passes on any other exception.
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
