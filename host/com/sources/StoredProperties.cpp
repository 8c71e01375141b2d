#include "host/com/sources/StoredProperties.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "common/text/modGlobal.h"
#include "host/registration/classes.h"

namespace kvo {
namespace {

using Entries = std::vector<MemoryBag::Entry>;

// What a control stores of which one property has been assigned.
Entries Stored(const ControlClass& contract, const PropertyRow& row, const Variant& value) {
  const auto control = contract.create();
  MemoryBag none;
  control->ReadProperties(none);
  control->Let(row.name, value);
  MemoryBag stored;
  control->WriteProperties(stored);
  return stored.Entries();
}

// The entry that is in the one and not in the other.
MemoryBag::Entry Changed(const ControlClass& contract, const PropertyRow& row, const Entries& with,
                         const Entries& without) {
  Entries changed;
  std::ranges::copy_if(with, std::back_inserter(changed), [&](const MemoryBag::Entry& entry) {
    return std::ranges::find(without, entry) == without.end();
  });
  if (changed.size() != 1)
    throw std::logic_error(std::string(contract.name) + '.' + std::string(row.name) +
                           " is not stored under one key");
  return changed.front();
}

struct StoredAs {
  std::string key;
  std::string way;
};

StoredAs Find(const ControlClass& contract, const PropertyRow& row) {
  const auto stored = [&](const Variant& value) { return Stored(contract, row, value); };
  // Values that are no class's defaults.
  constexpr std::string_view kText = "<x>";
  constexpr std::int32_t kNumber = 7;
  switch (row.type) {
    case PropertyType::text: {
      const auto [key, text] = Changed(contract, row, stored(kText), stored("y"));
      if (text == kText) return {key, "as-is"};
      if (text == EncodeMarkupTokens(kText)) return {key, "tokens"};
      throw std::logic_error(key + " stores a text as " + text);
    }
    case PropertyType::integer: {
      const auto [key, text] = Changed(contract, row, stored(kNumber), stored(kNumber + 1));
      if (text != ToText(Variant(kNumber))) throw std::logic_error(key + " stores 7 as " + text);
      return {key, "as-is"};
    }
    case PropertyType::flag: {
      const Entries yes = stored(true);
      const Entries no = stored(false);
      if (yes.size() == no.size()) {
        const auto [key, word] = Changed(contract, row, yes, no);
        return {key, word + '/' + Changed(contract, row, no, yes).second};
      }
      // No words: one of the two is the default, which is not stored.
      const auto& [more, less] = yes.size() > no.size() ? std::tie(yes, no) : std::tie(no, yes);
      return {Changed(contract, row, more, less).first, "as-is"};
    }
    case PropertyType::object:
      break;
  }
  return {};
}

}  // namespace

void WriteStoredProperties(std::ostream& out) {
  for (const RegisteredControl& registered : RegisteredControls()) {
    const ControlClass& contract = registered.contract();
    std::map<std::string, std::string, std::less<>> byKey;
    for (const PropertyRow& row : contract.properties) {
      if (row.type == PropertyType::object) continue;
      const StoredAs found = Find(contract, row);
      if (!byKey.emplace(found.key, ' ' + std::string(row.name) + ' ' + found.way).second)
        throw std::logic_error(found.key + " holds two properties");
    }
    for (const BagKey& key : contract.bag) {
      const auto found = byKey.find(key.key);
      out << contract.name << ' ' << key.key << (found == byKey.end() ? " - -" : found->second)
          << '\n';
    }
  }
}

}  // namespace kvo
