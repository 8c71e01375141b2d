// The late-binding seam: everything that is reached by member name at run time is an Object -
// controls, the host's Office, its field objects, the shop connection and its recordsets.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/values/Variant.h"

namespace kvo {

// Walks a collection in its own order.
class Enumerator {
 public:
  virtual ~Enumerator() = default;
  // The next element; nothing at the end.
  virtual std::optional<Variant> Next() = 0;
};

// Names match in any case. An unknown member is RuntimeError 438. Held by
// ObjectRef wherever a reference outlives a call.
class Object : public std::enable_shared_from_this<Object> {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object() = default;

  virtual Variant Get(std::string_view name);
  virtual void Let(std::string_view name, Variant value);
  virtual Variant Call(std::string_view name, std::span<const Variant> arguments);

  // Collections: the element with a key, and a walk over all elements. An object that is no
  // collection answers with RuntimeError 438.
  virtual Variant Item(const Variant& key);
  virtual std::unique_ptr<Enumerator> Enumerate();

  // The class names of the property pages that the object names for itself, or nullopt when it
  // does not offer such a list at all. An empty list is a list.
  virtual std::optional<std::vector<std::string>> PropertyPages();
};

// A collection of values in the order in which they were added; items by number, from 1.
class Collection final : public Object {
 public:
  void Add(Variant item) { items_.push_back(std::move(item)); }
  std::size_t Count() const { return items_.size(); }
  const Variant& operator[](std::size_t index) const { return items_[index]; }

  Variant Get(std::string_view name) override;                                       // Count
  Variant Call(std::string_view name, std::span<const Variant> arguments) override;  // Add, Item
  Variant Item(const Variant& key) override;
  std::unique_ptr<Enumerator> Enumerate() override;

 private:
  std::vector<Variant> items_;
};

// Calls `visit` for each element of a collection, in its order.
void ForEach(Object& collection, const std::function<void(const Variant&)>& visit);

}  // namespace kvo
