// Finds references to values in a text: "#customer.Email#", "#total#", <kv:contact field="Email">.
// Works for any encoding that extends ASCII.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>

#include "common/values/Ascii.h"

namespace kvo::uses {

// The groups of fields, and that of "#name#", a value that a script of the page sets.
inline constexpr std::string_view kContactGroup = "customer";
inline constexpr std::string_view kOrderGroup = "order";
inline constexpr std::string_view kScriptGroup = "script";

// A character of a name, blanks aside.
constexpr bool IsNameCharacter(char c) {
  return IsLetter(c) || IsDigit(c) || c == '_' || c == '-' || static_cast<unsigned char>(c) >= 0x80;
}
// Whether a field can have this name. Blanks are allowed inside it only.
bool IsFieldName(std::string_view name);

// "#group.name#" or "#name#".
struct Reference {
  std::string_view group;
  std::string_view name;
  std::size_t length = 0;
  std::size_t at = 0;  // where it begins, among those of a text
};
// Returns the reference that a text begins with.
std::optional<Reference> ReferenceAt(std::string_view text);
// Finds references from left to right, as the text is computed.
void ForEachReference(std::string_view text, const std::function<void(const Reference&)>& found);

enum class FieldKind { contact, order };
constexpr std::string_view GroupOf(FieldKind kind) {
  return kind == FieldKind::contact ? kContactGroup : kOrderGroup;
}

// A reference to a field in a text.
struct FieldReference {
  FieldKind kind = FieldKind::contact;
  bool isPath = true;     // otherwise a tag, or a name in a script
  std::string_view name;  // in the text
  std::size_t at = 0;     // where the reference begins
  std::size_t end = 0;
};

// Finds "#customer.NAME#" and "#order.NAME#", and then hand-written tags <kv:contact field="NAME">
// and <kv:order field="NAME">. Skips what cannot be a field's name, since style sheets, for
// example, contain similar beginnings. Finds a path even where its first "#" ends another
// reference.
void ForEachFieldReference(std::string_view text,
                           const std::function<void(const FieldReference&)>& found);

// Finds "customer.NAME" and "order.NAME" in the statements of scripts: in the whole text, or in the
// hand-written tags <kv:script> in it.
enum class Statements { everywhere, inTags };
void ForEachScriptReference(std::string_view text, Statements where,
                            const std::function<void(const FieldReference&)>& found);
// Whether statements can name a field so. Unlike elsewhere, "-" is minus and a blank ends a name.
bool IsNameInScript(std::string_view name);

// Whether a name is that of the order number, which the template engine knows in two spellings,
// whatever the office calls it.
bool IsOrderNumber(FieldKind kind, std::string_view name);

}  // namespace kvo::uses
