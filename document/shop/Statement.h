// A given statement, and the statements that read its records in pages.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kvo::shop {

// How a database expresses "n records from index m".
enum class Paging {
  limit,             // LIMIT n OFFSET m
  offsetFetch,       // OFFSET m ROWS FETCH NEXT n ROWS ONLY
  orderOffsetFetch,  // the same, but requires an ORDER BY
  none,              // not supported: read from the first record on
};

// A single reading statement: SELECT or WITH ... SELECT. RuntimeError 5 for anything else.
class Statement {
 public:
  explicit Statement(std::string_view text);

  // Without a semicolon at the end.
  const std::string& Text() const { return text_; }

  // Limits the statement itself, or wraps it when it has a limit of its own. Keeps the order of the
  // records.
  std::string Page(Paging paging, std::int64_t first, std::int64_t count) const;
  // Returns one record with one number.
  std::string Count() const;

 private:
  std::string text_;
  bool limited_ = false;  // has a LIMIT or the like at its end
  bool ordered_ = false;  // has an ORDER BY
};

}  // namespace kvo::shop
