// Shows any bytes as a page with the values of friendly and hostile records.
#include <cstddef>
#include <cstdint>

#include "fuzz/PreviewRules.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kvo::preview::CheckPreview({reinterpret_cast<const char*>(data), size});
  return 0;
}
