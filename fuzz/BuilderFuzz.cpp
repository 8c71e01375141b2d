// Plays any events in the expression builder.
#include <cstddef>
#include <cstdint>

#include "fuzz/BuilderRules.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kvo::CheckBuilder({reinterpret_cast<const char*>(data), size});
  return 0;
}
