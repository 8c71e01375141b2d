// Makes controls for finds.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/adopt/Adopt.h"
#include "document/adopt/TagControl.h"

namespace kvo::adopt {

// A control that a page is to hold, in the page's encoding.
struct Made {
  std::string element;
  std::string runtimeText;
};
// Nothing when the page's encoding cannot hold it.
std::optional<Made> Make(const ControlClass& contract, const Bag& bag,
                         const page::PageEncoding& encoding);

// The bag of a new control for a placeholder of this name; its tag has the name that the engine
// knows. The properties must suit the class; a text that a property does not take is left out.
Bag BagFor(const Target& target, std::string_view name);

// The properties that a bag sets, without those of the frame, by their names.
std::vector<std::pair<std::string, std::string>> PropertiesOf(const ControlClass& contract,
                                                              const Bag& bag);

// A part of a page as one line of UTF-8, shortened.
std::string Shown(std::string_view bytes, const page::PageEncoding& encoding);

// The displayed names of an office's fields.
class FieldCaptions {
 public:
  explicit FieldCaptions(const ObjectRef& office);

  // Gives a control of a field its caption, unless it has one.
  void AddTo(const ControlClass& contract, Bag& bag) const;

 private:
  std::map<std::pair<std::string, std::string>, std::string> captions_;  // by class and field
};

}  // namespace kvo::adopt
