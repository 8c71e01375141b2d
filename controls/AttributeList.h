// The attributes of an HTML element, as the two properties through which they are reached.
#pragma once

#include <string>
#include <string_view>

#include "common/values/Object.h"

namespace kvo {

// The list itself: texts "name|value". Shared with whoever sets it, never null.
class AttributeList {
 public:
  using Type = ObjectRef;
  static constexpr std::string_view kArgumentPrefix = "col";

  AttributeList() { (*this)(nullptr); }
  const ObjectRef& operator()() const { return items_; }
  void operator()(ObjectRef newItems);

  // Calls `visit` with each item as text.
  template <class Visit>
  void ForEachText(const Visit& visit) const {
    const auto visitItem = [&visit](const Variant& item) {
      if (const std::string* text = item.If<std::string>()) return visit(*text);
      visit(ToText(item));
    };
    if (own_ == nullptr) return ForEach(*items_, visitItem);
    for (std::size_t i = 0; i < own_->Count(); ++i) visitItem((*own_)[i]);
  }

 private:
  ObjectRef items_;
  const Collection* own_ = nullptr;  // items_, unless it is a host's own collection
};

// The items joined by "||". Empty items at the front get lost.
class JoinedAttributes {
 public:
  using Type = std::string;

  explicit JoinedAttributes(AttributeList& list) : list_(list) {}
  std::string operator()() const;
  void operator()(std::string_view newAttributes);

 private:
  AttributeList& list_;
};

}  // namespace kvo
