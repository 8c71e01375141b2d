// Loads every class of control from bags with any keys and values.
#include <cstddef>
#include <cstdint>

#include "fuzz/BagRules.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kvo::CheckBag({reinterpret_cast<const char*>(data), size});
  return 0;
}
