// Lower case of ASCII letters.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "common/values/Ascii.h"

namespace kvo::adopt {

inline std::string Lower(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), LowerAscii);
  return lower;
}

}  // namespace kvo::adopt
