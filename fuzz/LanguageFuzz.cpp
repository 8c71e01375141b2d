// Talks with the language server.
#include <cstddef>
#include <cstdint>

#include "fuzz/LanguageRules.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kvo::language::CheckLanguage({reinterpret_cast<const char*>(data), size});
  return 0;
}
