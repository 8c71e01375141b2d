// The values that a preview puts into a page in place of a real recipient's.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/values/Variant.h"
#include "document/uses/References.h"

namespace kvo::preview {

// Values by name, in their order. Names ignore the case of ASCII letters, as pages write
// "#order.orderid#" and "#order.orderID#" alike. A value is a flag, a number, a text or empty.
class Values {
 public:
  // nullptr when there is no value of this name.
  const Variant* Find(std::string_view name) const;
  // Replaces a value of the same name.
  void Set(std::string_view name, Variant value);
  const std::vector<std::pair<std::string, Variant>>& All() const { return all_; }
  bool operator==(const Values&) const = default;

 private:
  std::vector<std::pair<std::string, Variant>> all_;
};

// The groups that tags and references name; a record may have others.
inline constexpr std::string_view kCustomer = uses::kContactGroup;
inline constexpr std::string_view kOrder = uses::kOrderGroup;
inline constexpr std::string_view kConfig = "config";
inline constexpr std::string_view kScript = uses::kScriptGroup;

// One recipient. A reference "#customer.Email#" is the value "Email" of the group "customer".
struct Record {
  std::string name;
  // Whether the program made the values up, because there is no file of records.
  bool madeUp = false;
  std::vector<std::pair<std::string, Values>> groups;  // their names ignore case, too
  // The positions of the order; nothing when the record does not say.
  std::optional<std::vector<Values>> positions;

  // nullptr when there is no such group, or no such value in it.
  const Variant* Find(std::string_view group, std::string_view value) const;
  // Makes the group if it is missing.
  Values& Group(std::string_view group);
  bool operator==(const Record&) const = default;
};

// The values of a position that the preview shows, one for each column of the table. A missing
// total is the price times the quantity.
struct PositionColumn {
  std::string_view name;     // in the record
  std::string_view caption;  // of the column
};
inline constexpr PositionColumn kPositionColumns[] = {{"productNo", "Artikel"},
                                                      {"description", "Bezeichnung"},
                                                      {"quantity", "Menge"},
                                                      {"price", "Preis"},
                                                      {"total", "Summe"}};

}  // namespace kvo::preview
