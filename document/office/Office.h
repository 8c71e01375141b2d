// The context object that a host hands to its controls: which contact and order fields there are,
// and the way to the shop database.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/values/Object.h"

namespace kvo::office {

struct Field {
  std::string sqlName;
  std::string displayName;
  std::int32_t dataType = 0;
};

// Makes the shop connection of a connection string; opens nothing yet.
using ConnectionFactory = std::function<ObjectRef(const std::string& connectionString)>;

// Late bound: ContactFields, OrderFields, ShopDBConnection. Both collections walk their fields in
// the order given and find one by its SQLName, compared exactly (of two with the same name the
// first), or by number from 1; RuntimeError 9 when there is none. A field has SQLName, DisplayName
// and DataType. ShopDBConnection is empty when the office names no database, or when nobody makes
// connections; it is made when it is first asked for, and stays the same object.
class Office final : public Object {
 public:
  struct Description {
    std::vector<Field> contactFields;
    std::vector<Field> orderFields;
    std::optional<std::string> shopDatabase;  // a connection string
  };
  explicit Office(Description description, ConnectionFactory connections = {});

  const Description& Described() const { return description_; }

  Variant Get(std::string_view name) override;

 private:
  Description description_;
  ConnectionFactory connections_;
  ObjectRef contactFields_;
  ObjectRef orderFields_;
  ObjectRef connection_;
};

}  // namespace kvo::office
