// The fields that an office knows.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "common/values/Object.h"
#include "document/page/Problem.h"
#include "document/uses/References.h"

namespace kvo::check {

using uses::FieldKind;
using uses::FieldReference;
using uses::ForEachFieldReference;

// Copies share the names.
class FieldNames {
 public:
  explicit FieldNames(std::vector<std::string> names);

  bool Know(std::string_view name) const { return list_->known.contains(name); }

  // Returns the name that was probably meant; empty when none is near. Limits the number of
  // comparisons to keep the check of large pages fast; returns empty once they are used up.
  std::string Nearest(const std::string& name) { return Near(name).name; }
  // The same, but empty also when several names are near.
  std::string OnlyNear(const std::string& name);

 private:
  struct NearName {
    std::string name;
    bool only = false;
  };
  struct List {
    std::vector<std::string> names;
    std::vector<std::string_view> inOrder;  // views into names
    std::unordered_set<std::string_view> known;
  };

  NearName Near(const std::string& name);

  std::shared_ptr<const List> list_;
  std::unordered_map<std::string, NearName> nearest_;
  std::size_t compared_ = 0;
};

// An office's field lists: a copy for each page that is checked. A missing or empty list is
// nothing: it does not show which fields exist.
struct KnownFields {
  std::optional<FieldNames> contact;
  std::optional<FieldNames> order;
};
KnownFields FieldsOf(const ObjectRef& office);

// Whether this form can name only a field. Order paths may also name other values that the template
// engine knows; contact paths are written by the expression builder and name fields.
inline bool IsFieldForSure(const FieldReference& reference) {
  return reference.kind == FieldKind::contact || !reference.isPath;
}
// Whether it is "#order.orderid#", which position lists use for the order number.
inline bool IsOrderNumberPath(const FieldReference& reference) {
  return reference.isPath && uses::IsOrderNumber(reference.kind, reference.name);
}

// Returns the name that a field's unknown name surely stands for; empty when there is none or when
// it could not be written in a reference.
std::string MeantField(FieldKind kind, const std::string& name, KnownFields& fields);

// Returns the text with every reference to the field naming another instead.
std::string WithFieldRenamed(const std::string& text, FieldKind kind, std::string_view name,
                             std::string_view newName);

// Returns the message for an unknown field; nothing when it is known or the office has no list of
// its kind.
std::optional<Message> UnknownFieldMessage(FieldKind kind, const std::string& name,
                                           KnownFields& fields);

}  // namespace kvo::check
