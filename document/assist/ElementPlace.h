// Which part of a control's element a place in a page belongs to, even while the element is being
// typed and nothing behind the place is complete.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/frame/Control.h"
#include "document/page/Page.h"

namespace kvo::assist {

struct ElementPlace {
  enum class Part {
    content,    // between the tags, or in the beginning of a param's
    attribute,  // the name of an attribute, or where one can begin
    value,      // of an attribute
  };
  Part part = Part::content;
  std::size_t begin = 0;  // of what is typed there: of the tag, the name or the value
  bool inParam = false;   // otherwise in the start tag of the object
  // The attribute whose value it is, as written, and the quote around the value; '\0' without one.
  std::string_view attribute;
  char quote = '\0';
  const ControlClass* contract = nullptr;  // nullptr when the class is unknown or yet to be typed
  std::string key;                         // of the param, if it has one already
  std::vector<std::string> otherKeys;      // of the element's other params
};

// Returns nothing for a place outside of all object elements. Takes no more time than reading the
// page up to the place.
std::optional<ElementPlace> ElementPlaceAt(const page::Page& page, std::size_t place);

// An attribute's value that is being typed.
struct ValuePlace {
  std::string_view attribute;
  std::size_t begin = 0;  // of the value
};
// Returns the value that the end of `text` is in, when the last tag there has this name, such as
// "kv:contact".
std::optional<ValuePlace> OpenValueOf(std::string_view text, std::string_view name);

}  // namespace kvo::assist
