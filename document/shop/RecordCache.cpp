#include "document/shop/RecordCache.h"

#include <algorithm>
#include <cstdlib>

namespace kvo::shop {
namespace {

constexpr std::int64_t kPage = 128;
constexpr std::int64_t kLargestPage = 2048;
constexpr std::int64_t kHeld = 4096;

}  // namespace

const Record* RecordCache::At(std::int64_t index) {
  if (index < 0) return nullptr;
  auto page = std::ranges::find_if(pages_, [index](const Page& each) {
    return index >= each.first && index < each.first + each.asked;
  });
  if (page != pages_.end()) {
    pages_.splice(pages_.begin(), pages_, page);
  } else {
    const std::int64_t first = index / kPage * kPage;
    const std::int64_t asked = first == lastEnd_ ? std::min(lastSize_ * 2, kLargestPage) : kPage;
    pages_.push_front({.first = first, .asked = asked, .records = fetch_(first, asked)});
    lastEnd_ = first + asked;
    lastSize_ = asked;
    std::int64_t held = 0;
    std::erase_if(pages_, [&](const Page& each) { return (held += each.asked) > kHeld; });
  }
  const auto& records = pages_.front().records;
  const auto offset = static_cast<std::size_t>(index - pages_.front().first);
  return offset < records.size() ? &records[offset] : nullptr;
}

std::optional<std::int64_t> RecordCache::FindNear(
    std::int64_t index, const std::function<bool(const Record&)>& matches) const {
  std::optional<std::int64_t> nearest;
  for (const Page& page : pages_) {
    std::int64_t at = page.first;
    for (const Record& record : page.records) {
      if ((!nearest || std::abs(at - index) < std::abs(*nearest - index)) && matches(record))
        nearest = at;
      ++at;
    }
  }
  return nearest;
}

}  // namespace kvo::shop
