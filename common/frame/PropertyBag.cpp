#include "common/frame/PropertyBag.h"

namespace kvo {

bool MemoryBag::Find(std::string_view key, BagValue& value) {
  for (std::size_t step = 0; step < entries_.size(); ++step) {
    const std::size_t at = (next_ + step) % entries_.size();
    if (entries_[at].first != key) continue;
    next_ = at + 1;
    value.Set(std::string_view(entries_[at].second));
    return true;
  }
  return false;
}

void MemoryBag::Store(std::string_view key, std::string_view value) {
  entries_.emplace_back(key, value);
}

}  // namespace kvo
