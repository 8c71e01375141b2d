// The values of attributes that hold placeholders.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "document/adopt/ElementTags.h"
#include "document/adopt/Making.h"
#include "document/adopt/Pattern.h"
#include "document/adopt/Tags.h"
#include "document/page/Surroundings.h"

namespace kvo::adopt {

// A placeholder, where it stands, and the control that it asks for.
struct Hit {
  Placeholder found;
  page::Surroundings around;
  bool insideTag = false;        // a runtime tag
  const Block* block = nullptr;  // in whose content it stands
  Bag bag{};
  std::optional<Made> made{};
};
using Hits = std::span<Hit>;  // in page order

// The value in single quotes, with the tags of the controls in place of the placeholders; nothing
// when it cannot hold them.
std::optional<std::string> ValueWithTags(const page::Page& page,
                                         const ElementTag::Attribute& attribute, Hits hits);

const ControlClass& ElementClass();

// An attribute of the element control, decoded.
struct AttributePair {
  std::string name;
  std::string value;
};
using AttributePairs = std::vector<AttributePair>;

// The attributes with expressions in place of placeholders; nothing when an element control cannot
// hold them.
std::optional<AttributePairs> AttributesOf(const page::Page& page, const ElementTag& tag,
                                           Hits hits);
// Reads the attributes back from the runtime text of an element control: the engine is to see the
// same ones.
bool GivesAttributes(const page::PageEncoding& encoding, const Made& made,
                     const AttributePairs& pairs);

}  // namespace kvo::adopt
