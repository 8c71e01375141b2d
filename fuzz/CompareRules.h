// What holds when pages are compared and merged.
#pragma once

#include <string_view>

namespace kvo::compare {

// The input is three pages, divided by lines of "%": the common one and what two sides made of it.
// Throws std::logic_error when a rule is broken.
void CheckCompare(std::string_view input);

}  // namespace kvo::compare
