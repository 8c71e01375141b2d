// The fields that an office knows, and references to fields in a text.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "common/values/Object.h"
#include "document/page/Problem.h"

namespace kvo::check {

class FieldNames {
 public:
  explicit FieldNames(std::vector<std::string> names);
  FieldNames(FieldNames&&) = default;
  FieldNames& operator=(FieldNames&&) = default;

  bool Know(std::string_view name) const { return known_.contains(name); }

  // Returns the name that was probably meant; empty when none is near. Limits the number of
  // comparisons to keep the check of large pages fast; returns empty once they are used up.
  std::string Nearest(const std::string& name);

 private:
  std::vector<std::string> names_;
  std::vector<std::string_view> inOrder_;  // views into names_
  std::unordered_set<std::string_view> known_;
  std::unordered_map<std::string, std::string> nearest_;
  std::size_t compared_ = 0;
};

// An office's field lists. A missing or empty list is nothing: it does not show which fields exist.
struct KnownFields {
  std::optional<FieldNames> contact;
  std::optional<FieldNames> order;
};
KnownFields FieldsOf(const ObjectRef& office);

// Whether a field can have this name. Blanks are allowed inside it only.
bool IsFieldName(std::string_view name);

enum class FieldKind { contact, order };

// A reference to a field in a text.
struct FieldReference {
  FieldKind kind = FieldKind::contact;
  bool isPath = true;     // otherwise a tag
  std::string_view name;  // in the text
  std::size_t at = 0;     // where the reference begins
  std::size_t end = 0;
};

// Finds "#customer.NAME#" and "#order.NAME#", and hand-written tags <kv:contact field="NAME"> and
// <kv:order field="NAME">. Skips what cannot be a field's name, since style sheets, for example,
// contain similar beginnings. Works for any encoding that extends ASCII.
void ForEachFieldReference(std::string_view text,
                           const std::function<void(const FieldReference&)>& found);

// Whether this form can name only a field. Order paths may also name other values that the template
// engine knows; contact paths are written by the expression builder and name fields.
inline bool IsFieldForSure(const FieldReference& reference) {
  return reference.kind == FieldKind::contact || !reference.isPath;
}

// Returns the message for an unknown field; nothing when it is known or the office has no list of
// its kind.
std::optional<Message> UnknownFieldMessage(FieldKind kind, const std::string& name,
                                           KnownFields& fields);

}  // namespace kvo::check
