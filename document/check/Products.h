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

  // Looks up those that were not looked up before.
  void LookUp(const std::vector<std::string>& numbers);
  // False also for a number that could not be looked up.
  bool IsUnknown(const std::string& number) const;
  // Why not all numbers were looked up; once.
  std::optional<Message> TakeFailure() { return std::exchange(failure_, std::nullopt); }

 private:
  void Ask(std::span<const std::string> numbers, Object& office);

  ObjectRef office_;
  std::map<std::string, bool> known_;  // of each number that was looked up
  std::optional<Message> failure_;
  bool readable_ = true;
};

// Is told of the product lists of a page, and says at the end which products there are not.
class ProductCheck {
 public:
  explicit ProductCheck(ProductNumbers& products) : products_(products) {}

  void Note(const page::FoundControl& control, std::string_view selectedProducts);
  page::Problems Take();

 private:
  struct Noted {
    const page::FoundControl* control;
    std::vector<std::string> numbers;
  };
  ProductNumbers& products_;
  std::vector<Noted> noted_;
};

}  // namespace kvo::check
