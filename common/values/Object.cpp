#include "common/values/Object.h"

#include "common/values/Ascii.h"
#include "common/values/RuntimeError.h"

namespace kvo {
namespace {

[[noreturn]] void UnknownMember(std::string_view name) {
  throw RuntimeError(ErrorNumber::unknownMember, std::string(name));
}

class CollectionEnumerator final : public Enumerator {
 public:
  explicit CollectionEnumerator(std::vector<Variant> items) : items_(std::move(items)) {}
  std::optional<Variant> Next() override {
    if (next_ == items_.size()) return std::nullopt;
    return items_[next_++];
  }

 private:
  std::vector<Variant> items_;  // a copy: the collection may change during the walk
  std::size_t next_ = 0;
};

}  // namespace

Variant Object::Get(std::string_view name) { UnknownMember(name); }
// NOLINTNEXTLINE(performance-unnecessary-value-param): overriders keep the value
void Object::Let(std::string_view name, Variant) { UnknownMember(name); }
Variant Object::Call(std::string_view name, std::span<const Variant>) { UnknownMember(name); }
Variant Object::Item(const Variant&) { UnknownMember("Item"); }
std::unique_ptr<Enumerator> Object::Enumerate() { UnknownMember("_NewEnum"); }
std::optional<std::vector<std::string>> Object::PropertyPages() { return std::nullopt; }

Variant Collection::Get(std::string_view name) {
  if (EqualIgnoringCase(name, "Count")) return static_cast<std::int32_t>(items_.size());
  return Object::Get(name);
}

Variant Collection::Call(std::string_view name, std::span<const Variant> arguments) {
  if (EqualIgnoringCase(name, "Add") && arguments.size() == 1) {
    Add(arguments[0]);
    return {};
  }
  if (EqualIgnoringCase(name, "Item") && arguments.size() == 1) return Item(arguments[0]);
  return Object::Call(name, arguments);
}

Variant Collection::Item(const Variant& key) {
  const std::int32_t index = ToInteger(key);
  if (index < 1 || static_cast<std::size_t>(index) > items_.size())
    throw RuntimeError(ErrorNumber::subscriptOutOfRange);
  return items_[static_cast<std::size_t>(index) - 1];
}

std::unique_ptr<Enumerator> Collection::Enumerate() {
  return std::make_unique<CollectionEnumerator>(items_);
}

void ForEach(Object& collection, const std::function<void(const Variant&)>& visit) {
  const auto walk = collection.Enumerate();
  while (const auto element = walk->Next()) visit(*element);
}

}  // namespace kvo
