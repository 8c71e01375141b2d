#include "document/adopt/Mapping.h"

#include <algorithm>
#include <array>
#include <set>

#include "common/text/Suggest.h"
#include "common/values/Ascii.h"
#include "common/values/RuntimeError.h"
#include "document/adopt/Pattern.h"
#include "document/page/File.h"
#include "document/page/Messages.h"
#include "host/registration/classes.h"

namespace kvo::adopt {
namespace {

using office::JsonNode;
using office::PathTo;
using JsonKind = JsonNode::Kind;
using page::messages::Plain;
using page::messages::Quoted;
using page::messages::WithSuggestion;

constexpr std::string_view kPlaceholders = "placeholders";
constexpr std::string_view kLinks = "links";
constexpr std::string_view kNamespaces = "namespaces";
constexpr std::string_view kPattern = "pattern";
constexpr std::string_view kPatterns = "patterns";
constexpr std::string_view kClass = "class";
constexpr std::string_view kProperties = "properties";
constexpr std::string_view kFields = "fields";
constexpr std::string_view kField = "field";
constexpr std::string_view kFormat = "format";

constexpr std::array kFileKeys = {kPlaceholders, kLinks, kNamespaces};
constexpr std::array kRuleKeys = {kPattern, kPatterns, kClass, kProperties, kFields};
constexpr std::array kTargetKeys = {kClass, kProperties};
constexpr std::array kFieldKeys = {kField, kFormat, kClass, kProperties};

constexpr std::string_view kLinkClass = "DTCClicktracker";

// The groups of fields, and the controls that give one.
struct Group {
  std::string_view name;  // with the "."
  std::string_view className;
  std::string_view property;
  std::string_view fields;  // of the office; empty when it does not list them
};
constexpr Group kGroups[] = {{"customer.", "DTCContact", "Field", "ContactFields"},
                             {"order.", "DTCOrder", "Field", "OrderFields"},
                             {"config.", "DTCConfig", "Item", {}}};

constexpr Localized kFieldWanted{
    "\"customer.FELD\", \"order.FELD\", \"config.NAME\" oder ein Objekt mit class",
    "\"customer.FIELD\", \"order.FIELD\", \"config.NAME\" or an object with class"};
constexpr Localized kPropertyWanted{"ein Text, eine Zahl, true oder false",
                                    "a text, a number, true or false"};
constexpr Plain kNoTarget = {
    "{}: Es fehlt, was daraus wird. Ergänzen Sie class und properties, oder fields.",
    "{}: it says not what it becomes. Add class and properties, or fields."};
constexpr Plain kTwoTargets = {"{}: class und fields schließen sich aus. Löschen Sie eines.",
                               "{}: class and fields exclude each other. Delete one."};
constexpr Plain kNoPattern = {"{}: Der Schlüssel \"pattern\" fehlt. Ergänzen Sie ihn.",
                              "{}: the key \"pattern\" is missing. Add it."};
constexpr Plain kBadPattern = {
    "{}: Ein Muster hat mindestens zwei Zeichen und höchstens ein {name}, das nicht am Anfang "
    "steht.",
    "{}: a pattern has at least two characters and at most one {name}, which is not at the start."};
constexpr Plain kNameNeeded = {"{}: Mit fields braucht jedes Muster ein {name}.",
                               "{}: with fields, each pattern needs a {name}."};
constexpr Plain kSamePattern = {"{}: Dieses Muster steht schon weiter oben. Löschen Sie eines.",
                                "{}: this pattern stands further up already. Delete one."};
constexpr Plain kBadValue = {"{}: Die Eigenschaft nimmt diesen Wert nicht an ({}).",
                             "{}: the property does not take this value ({})."};
constexpr Plain kOnlyLinks = {"{}: Links werden zu DTCClicktracker, zu nichts anderem.",
                              "{}: links become DTCClicktracker and nothing else."};
constexpr Plain kBadNamespace = {"{}: Ein Namensraum besteht aus Buchstaben und Ziffern.",
                                 "{}: a namespace consists of letters and digits."};

// Fills a text that may hold {name} itself.
Message At(const Plain& wording, const std::string& path) {
  const auto fill = [&](std::string_view text) { return path + std::string(text.substr(2)); };
  return {fill(wording.german), fill(wording.english)};
}

class MappingReader : private office::JsonFileReader {
 public:
  explicit MappingReader(page::ProblemList& problems)
      : JsonFileReader(kMappingFileRule, problems) {}

  Mapping Read(const JsonNode& root) {
    Mapping mapping;
    if (!Is(root, JsonKind::object, "")) return mapping;
    CheckKeys(root, kFileKeys, "");
    for (const JsonNode& member : root.children) {
      if (member.key == kPlaceholders && Is(member, JsonKind::list, member.key))
        ForEachItem(member, member.key, [&](const JsonNode& item, const std::string& path) {
          mapping.placeholders.push_back(ReadRule(item, path));
        });
      if (member.key == kLinks && Is(member, JsonKind::object, member.key)) {
        CheckKeys(member, kTargetKeys, member.key);
        mapping.links = ReadTarget(member, member.key, {kNumberHole});
        if (mapping.links && mapping.links->contract->name != kLinkClass)
          Add(member.at, At(kOnlyLinks, member.key));
      }
      if (member.key == kNamespaces && Is(member, JsonKind::list, member.key))
        ForEachItem(member, member.key, [&](const JsonNode& item, const std::string& path) {
          if (!Is(item, JsonKind::text, path)) return;
          const auto belongs = [](char c) { return IsLetter(c) || IsDigit(c); };
          if (item.text.empty() || !std::ranges::all_of(item.text, belongs))
            Add(item.at, At(kBadNamespace, path));
          mapping.namespaces.push_back(item.text);
        });
    }
    return mapping;
  }

 private:
  template <class Visit>
  static void ForEachItem(const JsonNode& list, const std::string& path, Visit visit) {
    std::size_t index = 0;
    for (const JsonNode& item : list.children)
      visit(item, path + '[' + std::to_string(index++) + ']');
  }

  PlaceholderRule ReadRule(const JsonNode& object, const std::string& path) {
    PlaceholderRule rule;
    if (!Is(object, JsonKind::object, path)) return rule;
    CheckKeys(object, kRuleKeys, path);
    const JsonNode* const fields = object.Find(kFields);
    const JsonNode* const className = object.Find(kClass);
    if (className == nullptr && fields == nullptr) Add(object.at, At(kNoTarget, path));
    if (className != nullptr && fields != nullptr) Add(fields->keyAt, At(kTwoTargets, path));
    for (const JsonNode& member : object.children) {
      const std::string where = PathTo(path, member.key);
      if (member.key == kPattern) ReadPattern(member, where, fields != nullptr, rule);
      if (member.key == kPatterns && Is(member, JsonKind::list, where))
        ForEachItem(member, where, [&](const JsonNode& item, const std::string& at) {
          ReadPattern(item, at, fields != nullptr, rule);
        });
    }
    if (object.Find(kPattern) == nullptr && object.Find(kPatterns) == nullptr)
      Add(object.at, At(kNoPattern, path));
    if (className != nullptr) rule.target = ReadTarget(object, path, {kNameHole});
    if (fields != nullptr && Is(*fields, JsonKind::object, PathTo(path, kFields)))
      ReadFields(*fields, PathTo(path, kFields), rule);
    return rule;
  }

  void ReadPattern(const JsonNode& node, const std::string& path, bool needsName,
                   PlaceholderRule& rule) {
    if (!Is(node, JsonKind::text, path)) return;
    if (!IsPattern(node.text)) {
      Add(node.at, At(kBadPattern, path));
    } else if (needsName && node.text.find(kNameHole) == std::string::npos) {
      Add(node.at, At(kNameNeeded, path));
    } else if (!patterns_.insert(Lowered(node.text)).second) {
      Add(node.at, At(kSamePattern, path));
    } else {
      rule.patterns.push_back(node.text);
    }
  }

  void ReadFields(const JsonNode& object, const std::string& path, PlaceholderRule& rule) {
    for (const JsonNode& member : object.children) {
      const std::string where = PathTo(path, member.key);
      auto target = ReadField(member, where);
      if (!rule.fields.emplace(Lowered(member.key), target.value_or(Target())).second)
        AddDuplicate(member, where);
    }
  }

  std::optional<Target> ReadField(const JsonNode& node, const std::string& path) {
    if (node.kind == JsonKind::text) {
      auto target = TargetOfField(node.text);
      if (!target) WrongValue(node, kFieldWanted, path);
      return target;
    }
    if (node.kind != JsonKind::object) {
      WrongValue(node, kFieldWanted, path);
      return std::nullopt;
    }
    CheckKeys(node, kFieldKeys, path);
    if (node.Find(kClass) != nullptr) return ReadTarget(node, path, {kNameHole});
    std::optional<Target> target;
    if (const JsonNode* field = Required(node, kField, JsonKind::text, path)) {
      target = TargetOfField(field->text);
      if (!target) WrongValue(*field, kFieldWanted, PathTo(path, kField));
    }
    const JsonNode* const format = node.Find(kFormat);
    if (target && format != nullptr && Is(*format, JsonKind::text, PathTo(path, kFormat)))
      target->properties.emplace_back("Format", format->text);
    return target;
  }

  std::optional<Target> ReadTarget(const JsonNode& object, const std::string& path,
                                   std::string_view hole) {
    const JsonNode* const name = Required(object, kClass, JsonKind::text, path);
    if (name == nullptr) return std::nullopt;
    const RegisteredControl* const control = FindControlByName(name->text);
    if (control == nullptr) {
      std::vector<std::string_view> names;
      for (const RegisteredControl& each : RegisteredControls())
        names.push_back(each.contract().name);
      const std::string where = PathTo(path, kClass);
      Add(name->at,
          WithSuggestion({where + ": Diese Klasse gibt es nicht; „kvo classes“ zählt alle auf.",
                          where + ": there is no such class; \"kvo classes\" lists them all."},
                         Suggest(name->text, names)));
      return std::nullopt;
    }
    Target target{&control->contract(), {}};
    const JsonNode* const properties = object.Find(kProperties);
    if (properties == nullptr || !Is(*properties, JsonKind::object, PathTo(path, kProperties)))
      return target;
    for (const JsonNode& member : properties->children)
      ReadProperty(member, PathTo(PathTo(path, kProperties), member.key), hole, target);
    return target;
  }

  void ReadProperty(const JsonNode& node, const std::string& path, std::string_view hole,
                    Target& target) {
    const PropertyRow* const row = target.contract->FindProperty(node.key);
    if (row == nullptr || row->key.empty()) {
      std::vector<std::string_view> names;
      for (const PropertyRow& each : target.contract->bag)
        if (each.id != 0) names.push_back(each.name);
      const std::string className(target.contract->name);
      Add(node.keyAt, WithSuggestion({path + ": " + className + " hat diese Eigenschaft nicht.",
                                      path + ": " + className + " has no such property."},
                                     Suggest(node.key, names)));
      return;
    }
    if (IsTaken(target, row->name)) return AddDuplicate(node, path);
    std::string value = node.text;
    if (node.kind == JsonKind::flag)
      value = node.flag ? "true" : "false";
    else if (node.kind == JsonKind::integer)
      value = std::to_string(node.integer);
    else if (node.kind != JsonKind::text)
      return WrongValue(node, kPropertyWanted, path);
    try {
      if (value.find(hole) == std::string::npos) row->let(*target.contract->create(), value);
    } catch (const RuntimeError& error) {
      Add(node.at, kBadValue(path, error.what()));
      return;
    }
    target.properties.emplace_back(row->name, std::move(value));
  }

  static bool IsTaken(const Target& target, std::string_view name) {
    return std::ranges::find(target.properties, name,
                             &std::pair<std::string, std::string>::first) !=
           target.properties.end();
  }

  std::set<std::string> patterns_;
};

// A name without what differs between systems: case, "_", "-", blanks, umlauts, a group before a
// ".".
std::string Folded(std::string_view name) {
  struct Umlaut {
    std::string_view from;
    std::string_view to;
  };
  static constexpr Umlaut kUmlauts[] = {{"ä", "ae"}, {"ö", "oe"}, {"ü", "ue"}, {"Ä", "ae"},
                                        {"Ö", "oe"}, {"Ü", "ue"}, {"ß", "ss"}};
  if (const std::size_t dot = name.rfind('.'); dot + 1 < name.size()) name.remove_prefix(dot + 1);
  std::string folded;
  while (!name.empty()) {
    const auto* const umlaut = std::ranges::find_if(
        kUmlauts, [&](const Umlaut& each) { return name.starts_with(each.from); });
    if (umlaut != std::end(kUmlauts)) {
      folded += umlaut->to;
      name.remove_prefix(umlaut->from.size());
      continue;
    }
    const char c = LowerAscii(name.front());
    if (IsLetter(c) || IsDigit(c) || static_cast<unsigned char>(c) >= 0x80) folded += c;
    name.remove_prefix(1);
  }
  return folded;
}

}  // namespace

Mapping ReadMapping(std::string_view contents, const std::string& file) {
  return office::ReadJsonFile(contents, file, kMappingFileRule,
                              [](const JsonNode& root, page::ProblemList& problems) {
                                return MappingReader(problems).Read(root);
                              });
}

Mapping LoadMapping(const std::string& file) {
  return ReadMapping(page::ReadRegularFile(file, office::kLargestJsonFile), file);
}

std::optional<Target> TargetOfField(std::string_view field) {
  for (const Group& group : kGroups) {
    if (!field.starts_with(group.name) || field.size() == group.name.size()) continue;
    return Target{&FindControlByName(group.className)->contract(),
                  {{std::string(group.property), std::string(field.substr(group.name.size()))}}};
  }
  return std::nullopt;
}

FieldSuggestions::FieldSuggestions(const ObjectRef& office) {
  if (office == nullptr) return;
  for (const Group& group : kGroups) {
    if (group.fields.empty()) continue;
    try {
      ForEach(*ToObject(office->Get(group.fields)), [&](const Variant& item) {
        const ObjectRef field = ToObject(item);
        const std::string name = ToText(field->Get("SQLName"));
        for (const std::string& called : {name, ToText(field->Get("DisplayName"))})
          if (std::string folded = Folded(called); !folded.empty())
            names_.emplace_back(std::move(folded), std::string(group.name) + name);
      });
    } catch (const RuntimeError&) {
      // A context object without this list.
    }
  }
}

std::string FieldSuggestions::For(std::string_view placeholder) {
  // Enough for a thousand placeholders against a hundred fields.
  constexpr std::size_t kMostCompared = 200'000;
  const std::string name = Folded(placeholder);
  if (const auto asked = asked_.find(name); asked != asked_.end()) return asked->second;
  if (name.empty() || compared_ > kMostCompared) return {};
  compared_ += names_.size();
  std::vector<std::string_view> candidates;
  for (const auto& each : names_) candidates.push_back(each.first);
  const std::string_view nearest = Suggest(name, candidates);
  const auto found = std::ranges::find(
      names_, nearest, [](const auto& each) { return std::string_view(each.first); });
  return asked_[name] = nearest.empty() || found == names_.end() ? std::string() : found->second;
}

}  // namespace kvo::adopt
