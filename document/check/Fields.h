// The fields that an office knows, and where a text names some.
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

  // The one that was probably meant; empty when none is near. So that pages of any size are checked
  // quickly, only so many names are compared; when they are used up, nothing is near.
  std::string Nearest(const std::string& name);

 private:
  std::vector<std::string> names_;
  std::vector<std::string_view> inOrder_;  // of names_
  std::unordered_set<std::string_view> known_;
  std::unordered_map<std::string, std::string> nearest_;
  std::size_t compared_ = 0;
};

// The lists of an office; nothing when it has no such list, or an empty one: then it cannot be told
// which fields there are.
struct KnownFields {
  std::optional<FieldNames> contact;
  std::optional<FieldNames> order;
};
KnownFields FieldsOf(const ObjectRef& office);

enum class FieldKind { contact, order };

// A field that a text names.
struct FieldReference {
  FieldKind kind = FieldKind::contact;
  bool isPath = true;     // else a tag
  std::string_view name;  // in the text
  std::size_t at = 0;     // where the reference begins
};

// Finds "#customer.NAME#" and "#order.NAME#", and the tags <kv:contact field="NAME"> and
// <kv:order field="NAME"> that somebody wrote by hand. What cannot be a field's name is passed
// over: style sheets, for one, hold such beginnings too. Other than ASCII, the text may be of any
// encoding.
void ForEachFieldReference(std::string_view text,
                           const std::function<void(const FieldReference&)>& found);

// Whether only fields are named so. The template engine knows more of an order than its fields, and
// by what paths is its own affair; the recipient's fields are what the expression builder writes.
inline bool IsFieldForSure(const FieldReference& reference) {
  return reference.kind == FieldKind::contact || !reference.isPath;
}

// What is wrong with a field; nothing when it is known, or when the office has no list of its kind.
std::optional<Message> UnknownFieldMessage(FieldKind kind, const std::string& name,
                                           KnownFields& fields);

}  // namespace kvo::check
