#include "document/adopt/Making.h"

#include <algorithm>

#include "common/values/RuntimeError.h"
#include "document/adopt/TagControl.h"
#include "document/page/ElementWriter.h"

namespace kvo::adopt {
namespace {

constexpr std::string_view kContact = "DTCContact";
constexpr std::string_view kOrder = "DTCOrder";

std::string* ValueOf(Bag& bag, std::string_view key) {
  const auto found = std::ranges::find(bag, key, &MemoryBag::Entry::first);
  return found == bag.end() ? nullptr : &found->second;
}

}  // namespace

std::optional<Made> Make(const ControlClass& contract, const Bag& bag,
                         const page::PageEncoding& encoding) {
  Made made;
  try {
    const std::string text = page::Load(contract, bag)->GetRuntimeText();
    if (page::AppendText(text, encoding, made.runtimeText)) return std::nullopt;
    made.element = page::ElementText(contract, std::nullopt, bag, {}, encoding);
  } catch (const RuntimeError&) {
    return std::nullopt;
  }
  return made;
}

Bag BagFor(const Target& target, std::string_view name) {
  const ControlClass& contract = *target.contract;
  const std::shared_ptr<Control> control = page::Load(contract, {});
  control->basename(std::string(contract.TagName()));
  for (const auto& [property, text] : target.properties) {
    std::string value = text;
    if (const std::size_t hole = value.find(kNameHole); hole != std::string::npos)
      value.replace(hole, kNameHole.size(), name);
    try {
      control->Let(property, Variant(std::move(value)));
    } catch (const RuntimeError&) {
      continue;  // a number with {name} in it
    }
  }
  return AsStored(contract, page::StoredBag(*control));
}

std::vector<std::pair<std::string, std::string>> PropertiesOf(const ControlClass& contract,
                                                              const Bag& bag) {
  std::vector<std::pair<std::string, std::string>> properties;
  const std::shared_ptr<Control> control = page::Load(contract, bag);
  for (const PropertyRow& row : contract.bag) {
    if (row.id <= 3) continue;  // without a property, or of the frame
    const auto stored = std::ranges::find(bag, row.key, &MemoryBag::Entry::first);
    if (stored == bag.end() || stored->second.empty()) continue;
    properties.emplace_back(row.name, ToText(row.get(*control)));
  }
  return properties;
}

std::string Shown(std::string_view bytes, const page::PageEncoding& encoding) {
  constexpr std::size_t kMost = 80;
  std::string text;
  encoding.Decode(bytes.substr(0, 2 * kMost), text);
  std::string line;
  for (const char c : text)
    if (static_cast<unsigned char>(c) > ' ' || (!line.empty() && line.back() != ' '))
      line += static_cast<unsigned char>(c) > ' ' && c != 0x7F ? c : ' ';
  if (line.size() <= kMost) return line;
  std::size_t end = kMost;
  while (end > 0 && (static_cast<unsigned char>(line[end]) & 0xC0U) == 0x80) --end;
  return line.substr(0, end) + "...";
}

FieldCaptions::FieldCaptions(const ObjectRef& office) {
  if (office == nullptr) return;
  for (const auto& kind :
       {std::pair(kContact, "ContactFields"), std::pair(kOrder, "OrderFields")}) {
    try {
      ForEach(*ToObject(office->Get(kind.second)), [&](const Variant& item) {
        const ObjectRef field = ToObject(item);
        captions_.emplace(std::pair(kind.first, ToText(field->Get("SQLName"))),
                          ToText(field->Get("DisplayName")));
      });
    } catch (const RuntimeError&) {
      // A context object without this list.
    }
  }
}

void FieldCaptions::AddTo(const ControlClass& contract, Bag& bag) const {
  const PropertyRow* const field = contract.FindProperty("Field");
  const PropertyRow* const caption = contract.FindProperty("DisplayValue");
  if (field == nullptr || caption == nullptr) return;
  const std::string* const name = ValueOf(bag, field->key);
  if (name == nullptr || ValueOf(bag, caption->key) != nullptr) return;
  const auto found = captions_.find(std::pair(std::string(contract.name), *name));
  if (found == captions_.end() || found->second.empty()) return;
  bag.emplace_back(caption->key, found->second);
  bag = AsStored(contract, std::move(bag));
}

}  // namespace kvo::adopt
