// Reads any bytes as an office file.
#include <cstddef>
#include <cstdint>

#include "fuzz/OfficeRules.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kvo::office::CheckOffice({reinterpret_cast<const char*>(data), size});
  return 0;
}
