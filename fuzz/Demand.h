#pragma once

#include <stdexcept>
#include <string>

namespace kvo {

// Ends an input's run when a rule does not hold.
inline void Demand(bool holds, const std::string& rule) {
  if (!holds) throw std::logic_error(rule);
}

}  // namespace kvo
