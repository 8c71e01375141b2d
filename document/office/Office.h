// The context object that a host gives its controls: the contact and order fields, and access to
// the shop database.
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

// Makes a shop connection from a connection string without opening it.
using ConnectionFactory = std::function<ObjectRef(const std::string& connectionString)>;

// Late bound: ContactFields, OrderFields, ShopDBConnection. Both collections list their fields in
// the given order and find one by exact SQLName (the first of duplicates) or by number from 1;
// RuntimeError 9 when there is none. A field has SQLName, DisplayName and DataType.
// ShopDBConnection is made on first use and stays the same object; it is empty without a database
// or a connection factory.
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
