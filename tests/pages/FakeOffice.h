// A host's context object for tests.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "common/values/Ascii.h"
#include "common/values/Object.h"
#include "common/values/RuntimeError.h"

namespace kvo {

struct FakeField {
  std::string sqlName;
  std::string displayName;
  std::int32_t dataType = 0;
};

class FakeOffice final : public Object {
 public:
  std::vector<FakeField> contactFields;
  std::vector<FakeField> orderFields;
  ObjectRef connection;

  Variant Get(std::string_view name) override {
    if (EqualIgnoringCase(name, "ContactFields")) return Fields(contactFields);
    if (EqualIgnoringCase(name, "OrderFields")) return Fields(orderFields);
    if (EqualIgnoringCase(name, "ShopDBConnection")) return connection;
    return Object::Get(name);
  }

 private:
  class Field final : public Object {
   public:
    explicit Field(FakeField field) : field_(std::move(field)) {}
    Variant Get(std::string_view name) override {
      if (name == "SQLName") return field_.sqlName;
      if (name == "DisplayName") return field_.displayName;
      if (name == "DataType") return field_.dataType;
      return Object::Get(name);
    }

   private:
    FakeField field_;
  };

  class FieldCollection final : public Object {
   public:
    Collection inOrder;
    std::vector<std::string> names;
    Variant Item(const Variant& key) override {
      for (std::size_t at = 0; at < names.size(); ++at)
        if (names[at] == ToText(key)) return inOrder[at];
      throw RuntimeError(ErrorNumber::invalidCall, ToText(key));
    }
    std::unique_ptr<Enumerator> Enumerate() override { return inOrder.Enumerate(); }
  };

  static Variant Fields(const std::vector<FakeField>& fields) {
    const auto collection = std::make_shared<FieldCollection>();
    for (const FakeField& field : fields) {
      collection->inOrder.Add(ObjectRef(std::make_shared<Field>(field)));
      collection->names.push_back(field.sqlName);
    }
    return ObjectRef(collection);
  }
};

}  // namespace kvo
