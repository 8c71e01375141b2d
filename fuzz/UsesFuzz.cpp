// Finds and renames names in any bytes as a page.
#include <cstddef>
#include <cstdint>

#include "fuzz/UsesRules.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kvo::uses::CheckUses({reinterpret_cast<const char*>(data), size});
  return 0;
}
