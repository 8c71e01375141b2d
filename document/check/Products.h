// Looks up product numbers in the shop database.
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

// The products of an office's shop. Queries each number once, when needed, many in one statement;
// never writes. Needs a platform that makes recordsets. Reports an unreadable shop once, then stops
// asking.
class ProductNumbers {
 public:
  explicit ProductNumbers(ObjectRef office) : office_(std::move(office)) {}

  // Looks up the numbers not yet looked up. Returns once why some could not be.
  std::optional<Message> LookUp(const std::vector<std::string>& numbers);
  // False also for a number that could not be looked up.
  bool IsUnknown(const std::string& number) const;

 private:
  void Ask(std::span<const std::string> numbers, Object& office);

  ObjectRef office_;
  std::map<std::string, bool> known_;  // by number; whether it exists
  bool readable_ = true;
};

// The product numbers that a control names, at least one.
struct Selection {
  const page::FoundControl* control;
  std::vector<std::string> numbers;
};
// Splits a text at ",".
std::vector<std::string> NumbersIn(std::string_view products);
// Reports the products that do not exist.
page::Problems CheckProducts(const std::vector<Selection>& selections, ProductNumbers& products);

}  // namespace kvo::check
