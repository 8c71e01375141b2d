// Plays any events in the property pages of every control.
#include <cstddef>
#include <cstdint>

#include "fuzz/PagesRules.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kvo::CheckPages({reinterpret_cast<const char*>(data), size});
  return 0;
}
