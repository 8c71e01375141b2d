// Compares the text helpers with their definitions.
#include <cstddef>
#include <cstdint>

#include "fuzz/ModGlobalRules.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kvo::CheckTextHelpers({reinterpret_cast<const char*>(data), size});
  return 0;
}
