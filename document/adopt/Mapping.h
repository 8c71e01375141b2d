// What placeholders of another system become:
//
//   {"placeholders": [
//      {"patterns": ["{{ {name} }}", "*|{name}|*"],
//       "fields": {"vorname": "customer.FirstName", "summe": {"field": "order.OrderTotal",
//                                                             "format": "#,##0.00"}}},
//      {"pattern": "[ABMELDEN]", "class": "DTCUnsubscriber", "properties": {"Site": "..."}}],
//    "links": {"class": "DTCClicktracker", "properties": {"ClickId": "link-{number}"}},
//    "namespaces": ["shop"]}
//
// In a pattern, {name} stands for a name; white space may stand beside marks of two and more
// characters such as "{{". Upper and lower case of ASCII letters make no difference. All keys may
// be missing, and unknown ones are errors. docs/takeover.schema.json describes the file for other
// programs.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/frame/Control.h"
#include "common/values/Object.h"
#include "document/office/JsonFile.h"

namespace kvo::adopt {

// The rule id of every problem in a mapping file.
inline constexpr std::string_view kMappingFileRule = "mapping-file";

// A control to make: its class, and properties by name.
struct Target {
  const ControlClass* contract = nullptr;
  std::vector<std::pair<std::string, std::string>> properties;
  bool operator==(const Target&) const = default;
};

// The part of a pattern, and of a property, that stands for the placeholder's name.
inline constexpr std::string_view kNameHole = "{name}";
// The part of a property of "links" that stands for the link's number in its page.
inline constexpr std::string_view kNumberHole = "{number}";

struct PlaceholderRule {
  std::vector<std::string> patterns;     // UTF-8
  std::optional<Target> target;          // for every name
  std::map<std::string, Target> fields;  // by name in lower case
};

struct Mapping {
  std::vector<PlaceholderRule> placeholders;
  std::optional<Target> links;          // what links with a placeholder in their address become
  std::vector<std::string> namespaces;  // further prefixes of runtime tags
};

// Reads the contents of a mapping file. Throws office::JsonFileError; `file` is the name for its
// messages.
Mapping ReadMapping(std::string_view contents, const std::string& file);
// Throws page::FileError as well.
Mapping LoadMapping(const std::string& file);

// What "customer.FirstName", "order.OrderID" or "config.company-name" stands for; nothing for other
// texts.
std::optional<Target> TargetOfField(std::string_view field);
// The field of an office with this name, or one that is nearly called or displayed so, as
// "customer.FirstName"; empty when there is none.
class FieldSuggestions {
 public:
  explicit FieldSuggestions(const ObjectRef& office);

  std::string For(std::string_view placeholder);

 private:
  std::vector<std::pair<std::string, std::string>> names_;  // folded name, and its field
  std::map<std::string, std::string> asked_;
  std::size_t compared_ = 0;
};

}  // namespace kvo::adopt
