// What a control holds, property by property.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/values/Localized.h"
#include "document/compare/Version.h"

namespace kvo::compare {

// A property, the id or another attribute, or the runtime text.
struct Property {
  enum class Kind { id, row, attribute, text };

  Kind kind = Kind::row;
  std::size_t row = 0;    // Kind::row: of the class's bag
  std::string attribute;  // Kind::attribute: its name in lower case

  bool operator==(const Property&) const = default;
};

// The values of a control. A property without a value has its default; a runtime text without one
// is what the properties give.
class Values {
 public:
  Values(const Version& version, const page::FoundControl& control);

  // Returns what the control reads for the property.
  std::optional<std::string_view> Of(const Property& property) const;
  // Returns the value in the page; nothing when there is none.
  std::optional<std::string_view> Written(std::size_t row) const;

  // The properties of the id, of the class, and all attributes, in order.
  std::vector<Property> All() const;
  const page::FoundControl& Control() const { return *control_; }
  const Version& Of() const { return *version_; }

 private:
  const Version* version_;
  const page::FoundControl* control_;
  std::optional<std::string> handText_;
};

// Returns the properties of either control, first those of `a`. Both are of one class.
std::vector<Property> PropertiesOf(const Values& a, const Values& b);
// Whether both controls read the same values.
bool SameValues(const Values& a, const Values& b);

// Returns the property's name for messages, as scripts and `kvo set` write it.
Message NameOf(const Property& property, const ControlClass& contract);

// Returns a value on one line. Shortens a long one to where it begins to differ from `other`.
std::string Shown(std::optional<std::string_view> value,
                  std::optional<std::string_view> other = std::nullopt);

// Returns a control's name for messages: its id, or its class and line.
Message NameOf(const page::FoundControl& control);

}  // namespace kvo::compare
