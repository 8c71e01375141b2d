// Looks up products in the shop database.
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

inline constexpr Rule kUnknownProduct{
    "unknown-product",
    page::Severity::error,
    {"Ein Produkt, das es im Shop nicht gibt", "A product that the shop does not have"}};
inline constexpr Rule kProductsNotChecked{
    "products-not-checked",
    page::Severity::warning,
    {"Die Produkte konnten nicht nachgeschlagen werden", "The products could not be looked up"}};

struct ShopProduct {
  std::string number;  // as the shop writes it
  std::string description;
  std::string description2;
};

// Whether a number has only characters that are looked up.
bool CanBeLookedUp(std::string_view number);

// The products of an office's shop. Queries each number once, when needed, many in one statement;
// never writes. Needs a platform that makes recordsets. Reports an unreadable shop once, then stops
// asking.
class ShopProducts {
 public:
  enum class Read { numbers, descriptions };
  explicit ShopProducts(ObjectRef office, Read read = Read::numbers)
      : office_(std::move(office)), read_(read) {}

  // Looks up the numbers not yet looked up. Returns once why some could not be.
  std::optional<Message> LookUp(const std::vector<std::string>& numbers);
  // False also for a number that could not be looked up.
  bool IsUnknown(const std::string& number) const;
  // nullptr for a number that is unknown or could not be looked up.
  const ShopProduct* Find(const std::string& number) const;

 private:
  void Ask(std::span<const std::string> numbers, Object& office);
  std::string StatementFor(std::span<const std::string> numbers) const;

  ObjectRef office_;
  Read read_;
  std::map<std::string, std::optional<ShopProduct>>
      known_;  // by number; nothing if not in the shop
  bool readable_ = true;
};

// Splits a text at ",".
std::vector<std::string> NumbersIn(std::string_view products);
// Reports the products that do not exist.
page::Problems CheckProducts(const Selections& selections, ShopProducts& products);

}  // namespace kvo::check
