// The records of a statement that were looked at lately.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <optional>
#include <vector>

#include "document/shop/Database.h"

namespace kvo::shop {

// Fetches a page of 128 records when one of them is looked at. Whoever reads on from page to page
// gets larger ones, up to 2048, because each costs the database the way to its start. Holds at most
// 4096 records, however many there are; those looked at longest ago go first.
class RecordCache {
 public:
  using Fetch = std::function<std::vector<Record>(std::int64_t first, std::int64_t count)>;
  explicit RecordCache(Fetch fetch) : fetch_(std::move(fetch)) {}

  // nullptr when there is no such record; valid until the next call.
  const Record* At(std::int64_t index);

  // The held record nearest to `index` for which `matches` holds, by its index.
  std::optional<std::int64_t> FindNear(std::int64_t index,
                                       const std::function<bool(const Record&)>& matches) const;

 private:
  struct Page {
    std::int64_t first = 0;
    std::int64_t asked = 0;  // a page with fewer records is the last one
    std::vector<Record> records{};
  };

  Fetch fetch_;
  std::list<Page> pages_;  // the last used first
  std::int64_t lastEnd_ = -1;
  std::int64_t lastSize_ = 0;
};

}  // namespace kvo::shop
