#pragma once

#include <stdexcept>
#include <string>

namespace kvo {

// Throws std::logic_error when a rule is broken, which ends the input's run.
inline void Demand(bool holds, const std::string& rule) {
  if (!holds) throw std::logic_error(rule);
}

}  // namespace kvo
