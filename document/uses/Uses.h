// Finds where a page uses fields, and the ids and classes of its controls.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/page/Page.h"

namespace kvo::uses {

enum class Kind { contactField, orderField, controlId, controlClass };

// What can be used in a page.
struct Name {
  Kind kind = Kind::contactField;
  std::string text;
  auto operator<=>(const Name&) const = default;
};
inline bool IsField(const Name& name) {
  return name.kind == Kind::contactField || name.kind == Kind::orderField;
}
// As users write it: "customer.Email", "order.Total", an id, a class name.
std::string Written(const Name& name);
// All that a user can mean by a word, fields first. An id can be any word.
std::vector<Name> NamesMeant(std::string_view word);

// How a name is written.
enum class Form {
  value,  // a whole value: of the property Field, of the attribute id or classid
  path,   // "#customer.NAME#"
  tag,    // <kv:contact field="NAME">, written by hand
  word,   // customer.NAME in the statements of a script
};

struct Use {
  static constexpr std::size_t kNoControl = static_cast<std::size_t>(-1);

  Name name;
  Form form = Form::path;
  page::Place place;      // of the name
  std::size_t begin = 0;  // the name's bytes in the page; for a class, those of the class id
  std::size_t end = 0;
  bool quoted = true;                // what it is the value of is in quotation marks
  std::size_t control = kNoControl;  // page::FoundControl::index
  std::string property;              // the control's property, else the attribute or param
};

struct PageUses {
  std::vector<page::FoundControl> controls;
  std::vector<Use> uses;  // in page order
};

// Finds all uses of all names, also in broken controls. Searches the properties of controls as they
// are read, with their character references and tokens, and the page's text between the controls:
// tags, comments and scripts included. Not what controls saved as their runtime text. Takes time in
// proportion to the page.
PageUses FindUses(const page::Page& page);

// Returns the uses of one name. Compares exactly, as checks do.
std::vector<Use> UsesOf(const Name& name, const std::vector<Use>& uses);

// Returns what is around a use, the property's value or the page's line, cut to what a list can
// show. `controls` are those of the page.
std::string Excerpt(const page::Page& page, const std::vector<page::FoundControl>& controls,
                    const Use& use);

// Returns the page with line breaks in place of its controls, so that no offset changes and no name
// goes across a control.
std::string WithoutControls(const page::Page& page,
                            const std::vector<page::FoundControl>& controls);

}  // namespace kvo::uses
