#include "document/office/Office.h"

#include <utility>

#include "common/values/Ascii.h"
#include "common/values/RuntimeError.h"

namespace kvo::office {
namespace {

class FieldObject final : public Object {
 public:
  explicit FieldObject(Field field) : field_(std::move(field)) {}

  const std::string& SqlName() const { return field_.sqlName; }

  Variant Get(std::string_view name) override {
    if (EqualIgnoringCase(name, "SQLName")) return field_.sqlName;
    if (EqualIgnoringCase(name, "DisplayName")) return field_.displayName;
    if (EqualIgnoringCase(name, "DataType")) return field_.dataType;
    return Object::Get(name);
  }

 private:
  Field field_;
};

class FieldCollection final : public Object {
 public:
  explicit FieldCollection(const std::vector<Field>& fields) {
    for (const Field& field : fields) fields_.push_back(std::make_shared<FieldObject>(field));
  }

  Variant Get(std::string_view name) override {
    if (EqualIgnoringCase(name, "Count")) return static_cast<std::int32_t>(fields_.size());
    return Object::Get(name);
  }

  Variant Call(std::string_view name, std::span<const Variant> arguments) override {
    if (EqualIgnoringCase(name, "Item") && arguments.size() == 1) return Item(arguments[0]);
    return Object::Call(name, arguments);
  }

  Variant Item(const Variant& key) override {
    if (const std::string* sqlName = key.If<std::string>()) {
      for (const auto& field : fields_)
        if (field->SqlName() == *sqlName) return ObjectRef(field);
      throw RuntimeError(ErrorNumber::subscriptOutOfRange, '"' + *sqlName + '"');
    }
    const std::int32_t number = ToInteger(key);
    if (number < 1 || static_cast<std::size_t>(number) > fields_.size())
      throw RuntimeError(ErrorNumber::subscriptOutOfRange, std::to_string(number));
    return ObjectRef(fields_[static_cast<std::size_t>(number) - 1]);
  }

  std::unique_ptr<Enumerator> Enumerate() override {
    return std::make_unique<Walk>(std::static_pointer_cast<FieldCollection>(shared_from_this()));
  }

 private:
  class Walk final : public Enumerator {
   public:
    explicit Walk(std::shared_ptr<FieldCollection> fields) : fields_(std::move(fields)) {}
    std::optional<Variant> Next() override {
      if (next_ == fields_->fields_.size()) return std::nullopt;
      return ObjectRef(fields_->fields_[next_++]);
    }

   private:
    std::shared_ptr<FieldCollection> fields_;
    std::size_t next_ = 0;
  };

  std::vector<std::shared_ptr<FieldObject>> fields_;
};

}  // namespace

Office::Office(Description description, ConnectionFactory connections)
    : description_(std::move(description)),
      connections_(std::move(connections)),
      contactFields_(std::make_shared<FieldCollection>(description_.contactFields)),
      orderFields_(std::make_shared<FieldCollection>(description_.orderFields)) {}

Variant Office::Get(std::string_view name) {
  if (EqualIgnoringCase(name, "ContactFields")) return contactFields_;
  if (EqualIgnoringCase(name, "OrderFields")) return orderFields_;
  if (EqualIgnoringCase(name, "ShopDBConnection")) {
    if (connection_ == nullptr && description_.shopDatabase && connections_)
      connection_ = connections_(*description_.shopDatabase);
    return connection_ != nullptr ? Variant(connection_) : Variant();
  }
  return Object::Get(name);
}

}  // namespace kvo::office
