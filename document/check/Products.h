// Product numbers, looked up in the database of the shop.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/values/Object.h"
#include "document/check/Check.h"

namespace kvo::check {

inline constexpr Rule kUnknownProduct{"unknown-product", page::Severity::error};
inline constexpr Rule kProductsNotChecked{"products-not-checked", page::Severity::warning};

// The products of an office's shop. Each number is asked for once, many with one statement, and
// only when it is needed; nothing is written. Needs a platform that makes recordsets. A shop that
// cannot be read is told once and then left alone.
class ProductNumbers {
 public:
  explicit ProductNumbers(ObjectRef office) : office_(std::move(office)) {}

  // Looks up those that were not looked up before. Answers why not all were; once.
  std::optional<Message> LookUp(const std::vector<std::string>& numbers);
  // False also for a number that could not be looked up.
  bool IsUnknown(const std::string& number) const;

 private:
  void Ask(std::span<const std::string> numbers, Object& office);

  ObjectRef office_;
  std::map<std::string, bool> known_;  // of each number that was looked up
  bool readable_ = true;
};

// The products that a control names, at least one.
struct Selection {
  const page::FoundControl* control;
  std::vector<std::string> numbers;
};
// Those of a text that parts them by ",".
std::vector<std::string> NumbersIn(std::string_view products);
// Says which of them there are not.
page::Problems CheckProducts(const std::vector<Selection>& selections, ProductNumbers& products);

}  // namespace kvo::check
