#include "common/PropertyBag.h"

namespace kvo {

std::optional<Variant> MemoryBag::Find(std::string_view key) {
  for (std::size_t step = 0; step < entries_.size(); ++step) {
    const std::size_t at = (next_ + step) % entries_.size();
    if (entries_[at].first != key) continue;
    next_ = at + 1;
    return Variant(entries_[at].second);
  }
  return std::nullopt;
}

void MemoryBag::Store(std::string_view key, std::string_view value) {
  entries_.emplace_back(key, value);
}

}  // namespace kvo
