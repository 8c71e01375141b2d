// Office files made of any bytes.
#include <cstddef>
#include <cstdint>

#include "fuzz/OfficeRules.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kvo::office::CheckOffice({reinterpret_cast<const char*>(data), size});
  return 0;
}
