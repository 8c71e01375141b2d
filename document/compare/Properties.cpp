#include "document/compare/Properties.h"

#include <algorithm>

#include "common/values/Ascii.h"

namespace kvo::compare {
namespace {

std::size_t CommonBegin(std::string_view a, std::string_view b) {
  const std::size_t size = std::min(a.size(), b.size());
  return static_cast<std::size_t>(std::mismatch(a.begin(), a.begin() + size, b.begin()).first -
                                  a.begin());
}

bool IsInsideCharacter(std::string_view text, std::size_t at) {
  return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80;
}

}  // namespace

Values::Values(const Version& version, const page::FoundControl& control)
    : version_(&version), control_(&control), handText_(version.HandText(control)) {}

std::optional<std::string_view> Values::Written(std::size_t row) const {
  const auto entry =
      std::ranges::find(control_->bag, control_->contract->bag[row].key, &MemoryBag::Entry::first);
  if (entry == control_->bag.end()) return std::nullopt;
  return entry->second;
}

std::optional<std::string_view> Values::Of(const Property& property) const {
  switch (property.kind) {
    case Property::Kind::id:
      return control_->id;
    case Property::Kind::row:
      return Written(property.row).value_or(control_->contract->bag[property.row].readDefault);
    case Property::Kind::attribute:
      for (const auto& [name, value] : control_->attributes)
        if (Lowered(name) == property.attribute) return value ? std::string_view(*value) : "";
      return std::nullopt;
    case Property::Kind::text:
      break;
  }
  if (!handText_) return std::nullopt;
  return *handText_;
}

std::vector<Property> Values::All() const {
  std::vector<Property> all;
  all.push_back({Property::Kind::id, 0, {}});
  for (std::size_t row = 0; row < control_->contract->bag.size(); ++row)
    all.push_back({Property::Kind::row, row, {}});
  for (const page::Attribute& attribute : control_->attributes)
    all.push_back({Property::Kind::attribute, 0, Lowered(attribute.name)});
  all.push_back({Property::Kind::text, 0, {}});
  return all;
}

std::vector<Property> PropertiesOf(const Values& a, const Values& b) {
  std::vector<Property> all = a.All();
  for (Property& property : b.All())
    if (property.kind == Property::Kind::attribute && std::ranges::find(all, property) == all.end())
      all.insert(all.end() - 1, std::move(property));
  return all;
}

bool SameValues(const Values& a, const Values& b) {
  return std::ranges::all_of(PropertiesOf(a, b), [&](const Property& property) {
    return a.Of(property) == b.Of(property);
  });
}

Message NameOf(const Property& property, const ControlClass& contract) {
  switch (property.kind) {
    case Property::Kind::id:
      return {"id", "id"};
    case Property::Kind::row: {
      const PropertyRow& row = contract.bag[property.row];
      const std::string name(row.name.empty() ? row.key : row.name);
      return {name, name};
    }
    case Property::Kind::attribute:
      return {property.attribute, property.attribute};
    case Property::Kind::text:
      break;
  }
  return {"Laufzeittext", "runtime text"};
}

std::string Shown(std::optional<std::string_view> value, std::optional<std::string_view> other) {
  constexpr std::size_t kMost = 60;
  constexpr std::size_t kBefore = 20;  // characters before the first that differs
  constexpr std::string_view kEllipsis = "\xE2\x80\xA6";
  const std::string_view whole = value.value_or(std::string_view());
  std::size_t begin = 0;
  std::size_t end = whole.size();
  if (whole.size() > kMost) {
    if (other) begin = CommonBegin(whole, *other);
    begin = begin > kBefore ? begin - kBefore : 0;
    begin = std::min(begin, whole.size() - kMost);
    end = begin + kMost;
    while (IsInsideCharacter(whole, begin)) --begin;
    while (IsInsideCharacter(whole, end)) ++end;
  }
  std::string shown;
  for (const char c : whole.substr(begin, end - begin)) {
    if (c == '\r')
      shown += "\\r";
    else if (c == '\n')
      shown += "\\n";
    else if (c == '\t')
      shown += "\\t";
    else
      shown += c;
  }
  // Shows where a value begins and ends that could be overlooked.
  if (whole.empty() || whole.front() == ' ' || whole.back() == ' ') shown = '"' + shown + '"';
  if (begin > 0) shown.insert(0, kEllipsis);
  if (end < whole.size()) shown += kEllipsis;
  return shown;
}

Message NameOf(const page::FoundControl& control) {
  if (!control.id.empty()) {
    const std::string id = Shown(control.id);
    return {id, id};
  }
  return Filled(Localized{"{} in Zeile {}", "{} in line {}"},
                std::vector<std::string>{control.className, std::to_string(control.place.line)});
}

}  // namespace kvo::compare
