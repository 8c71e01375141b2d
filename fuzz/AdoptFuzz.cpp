// Takes any bytes over as a page, with a mapping that knows some placeholders.
#include <cstddef>
#include <cstdint>

#include "fuzz/AdoptRules.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kvo::adopt::CheckAdopt({reinterpret_cast<const char*>(data), size});
  return 0;
}
