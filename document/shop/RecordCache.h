// Caches the recently used records of a statement.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <optional>
#include <vector>

#include "document/shop/Database.h"

namespace kvo::shop {

// Fetches a page of 128 records when one of them is needed. Sequential reading gets larger pages,
// up to 2048, because the database has to skip to the start of each. Holds at most 4096 records and
// drops the least recently used pages.
class RecordCache {
 public:
  using Fetch = std::function<std::vector<Record>(std::int64_t first, std::int64_t count)>;
  explicit RecordCache(Fetch fetch) : fetch_(std::move(fetch)) {}

  // Returns a record, valid until the next call; nullptr when there is none.
  const Record* At(std::int64_t index);

  // Returns the index of the matching cached record nearest to `index`.
  std::optional<std::int64_t> FindNear(std::int64_t index,
                                       const std::function<bool(const Record&)>& matches) const;

 private:
  struct Page {
    std::int64_t first = 0;
    std::int64_t asked = 0;  // a page with fewer records is the last one
    std::vector<Record> records{};
  };

  Fetch fetch_;
  std::list<Page> pages_;  // most recently used first
  std::int64_t lastEnd_ = -1;
  std::int64_t lastSize_ = 0;
};

}  // namespace kvo::shop
