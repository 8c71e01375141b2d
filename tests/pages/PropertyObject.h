// An object with properties and nothing else.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/values/Object.h"

namespace kvo {

// Keeps assigned values as properties. Enough for pages, which access their objects only by
// property name.
class PropertyObject : public Object {
 public:
  using Properties = std::map<std::string, Variant, std::less<>>;
  explicit PropertyObject(Properties properties) : properties_(std::move(properties)) {}

  Variant Get(std::string_view name) override {
    const auto property = properties_.find(name);
    return property == properties_.end() ? Object::Get(name) : property->second;
  }
  void Let(std::string_view name, Variant value) override {
    const auto property = properties_.find(name);
    if (property == properties_.end()) return Object::Let(name, std::move(value));
    property->second = std::move(value);
    written.emplace_back(name);
  }

  Variant operator[](std::string_view name) { return Get(name); }
  const Properties& All() const { return properties_; }
  std::vector<std::string> written;  // in order

 private:
  Properties properties_;
};

}  // namespace kvo
