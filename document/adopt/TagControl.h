// Finds the control whose runtime text is a given text.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/frame/Control.h"
#include "common/frame/PropertyBag.h"
#include "common/values/Localized.h"

namespace kvo::adopt {

using Bag = std::vector<MemoryBag::Entry>;

// A runtime text in its parts. All texts are UTF-8, as written and not decoded.
struct WrittenTag {
  std::string prefix;  // without the ":"
  std::string name;
  std::vector<std::pair<std::string, std::string>> attributes;
  // By property, such as "OnTrue".
  std::vector<std::pair<std::string_view, std::string>> contents;
  std::string text;  // all of it, with the markers around a block
};

// The bag of a control that writes the text, or why there is none.
struct TagControl {
  std::optional<Bag> bag;
  Message reason;
};

// Reads each attribute with the row of the class that writes it. Needs a platform, as all that
// calls controls does.
TagControl ControlOf(const ControlClass& contract, const WrittenTag& tag);

// Whether a row of the class writes an attribute of this name, whatever its value is.
bool Writes(const ControlClass& contract, std::string_view attribute);

// The bag as a control of the class stores it, if that keeps the runtime text; else the given one.
Bag AsStored(const ControlClass& contract, Bag bag);

}  // namespace kvo::adopt
