#include "common/frame/PropertyBag.h"

namespace kvo {

std::optional<std::string_view> MemoryBag::Find(std::string_view key) {
  for (const auto& [stored, value] : entries_)
    if (stored == key) return value;
  return std::nullopt;
}

void MemoryBag::Store(std::string_view key, std::string_view value) {
  entries_.emplace_back(key, value);
}

}  // namespace kvo
