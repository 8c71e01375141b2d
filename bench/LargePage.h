#pragma once

#include <string>

namespace kvo::bench {

// Two megabytes with 2,000 controls that print, look up, decide and link.
std::string LargePage();

}  // namespace kvo::bench
