// Compares and merges any pages.
#include <cstddef>
#include <cstdint>

#include "fuzz/CompareRules.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kvo::compare::CheckCompare({reinterpret_cast<const char*>(data), size});
  return 0;
}
