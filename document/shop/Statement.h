// A statement as it was given, and the statements that read its records in pieces.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kvo::shop {

// How a database spells "n records from the m-th on".
enum class Paging {
  limit,             // LIMIT n OFFSET m
  offsetFetch,       // OFFSET m ROWS FETCH NEXT n ROWS ONLY
  orderOffsetFetch,  // the same, where it has to stand behind an ORDER BY
  none,              // no way: the records are read from the first on
};

// Only reading ones: SELECT or WITH ... SELECT, and one of them. Anything else is RuntimeError 5.
class Statement {
 public:
  explicit Statement(std::string_view text);

  // Without a semicolon at the end.
  const std::string& Text() const { return text_; }

  // As its own limit, if it has none; else around it. The order of its records is kept.
  std::string Page(Paging paging, std::int64_t first, std::int64_t count) const;
  // One record of one number.
  std::string Count() const;

 private:
  std::string text_;
  bool limited_ = false;  // has a LIMIT or the like at its end
  bool ordered_ = false;  // has an ORDER BY
};

}  // namespace kvo::shop
