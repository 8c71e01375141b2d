#include "fuzz/BagRules.h"

#include <algorithm>
#include <optional>

#include "common/text/modGlobal.h"
#include "common/values/RuntimeError.h"
#include "document/page/NewGuids.h"
#include "fuzz/Demand.h"
#include "fuzz/StoryBag.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo {
namespace {

using Bag = std::vector<MemoryBag::Entry>;

constexpr int kMostRounds = 50;

// The runtime text, or the number of the error that was thrown.
struct Outcome {
  std::string text;
  int error = 0;
};

Outcome RuntimeTextOf(const Control& control) {
  try {
    return {control.GetRuntimeText(), 0};
  } catch (const RuntimeError& error) {
    return {{}, error.Number()};
  }
}

void DemandSoundBox(const Control& control) {
  const Box box = control.DesignTimeBox();
  const auto positive = [](int width, int height) { return width >= 0 && height >= 0; };
  Demand(positive(box.width, box.height), "the box is negative");
  Demand(positive(box.border.width, box.border.height), "the box's border is negative");
  for (const Box::Label& label : box.labels)
    Demand(positive(label.at.width, label.at.height), "a label of the box is negative");
}

void DemandOwnKeysInOrder(const Bag& bag, const ControlClass& contract) {
  auto key = contract.bag.begin();
  for (const MemoryBag::Entry& entry : bag) {
    key = std::find_if(key, contract.bag.end(),
                       [&](const PropertyRow& row) { return row.key == entry.first; });
    Demand(key != contract.bag.end(),
           "a stored key is repeated, out of order or unknown to the class");
    Demand(key->writeDefault != entry.second, "a key is stored with its default value");
    ++key;
  }
}

// Demands the same text each time, except for new identifiers, which one class makes on demand.
void DemandSteadyText(const Control& control, const Bag& bag) {
  const Outcome first = RuntimeTextOf(control);
  const Outcome second = RuntimeTextOf(control);
  Demand(first.error == second.error, "the runtime text fails only once in two calls");
  if (first.text == second.text) return;
  const bool cached = std::ranges::find(bag, MemoryBag::Entry("in-cache", "yes")) != bag.end();
  Demand(cached, "two runtime texts differ");
  Demand(page::EqualButForNewGuids(first.text, second.text, RuntimeTextOf(control).text),
         "two runtime texts differ in more than new identifiers");
}

// Returns what a control stores when it is loaded from `bag`, which a control of its class stored.
Bag StoredNext(const ControlClass& contract, const Bag& bag) {
  if (contract.name != "DTCProductList") return bag;
  // Deliberate: an empty border is not stored and comes back as "0"; a chain of tokens is decoded
  // once more, and loses any CDATA marker that this reveals.
  Bag next;
  for (const PropertyRow& row : contract.bag) {
    const auto stored = std::ranges::find(bag, row.key, &MemoryBag::Entry::first);
    std::optional<std::string> value;
    if (stored != bag.end()) value = stored->second;
    if (row.key == "table-border" && !value) value = "0";
    if (row.key == "selected-products" && value)
      value = EncodeMarkupTokens(DecodeMarkupTokens(*value));
    if (value && row.writeDefault != *value) next.emplace_back(row.key, *value);
  }
  return next;
}

void DemandSameProperties(Control& control, Control& again) {
  for (const PropertyRow& row : control.Class().properties)
    if (row.type != PropertyType::object)
      Demand(control.Get(row.name) == again.Get(row.name),
             "a property changed after saving and loading: " + std::string(row.name));
}

// Saves and loads until nothing changes, and checks every change on the way.
void CheckRounds(std::shared_ptr<Control> control) {
  const ControlClass& contract = control->Class();
  for (int round = 0; round < kMostRounds; ++round) {
    const Bag stored = StoredBy(*control);
    DemandOwnKeysInOrder(stored, contract);
    DemandSteadyText(*control, stored);
    DemandSoundBox(*control);

    const std::shared_ptr<Control> again = contract.create();
    MemoryBag bag(stored);
    again->ReadProperties(bag);
    const Bag next = StoredBy(*again);
    Demand(next == StoredNext(contract, stored), "a bag changed between two saves");
    // On the first round the product list still holds markers from the host's bag, which it does
    // not store.
    if (next == stored && (round > 0 || contract.name != "DTCProductList")) {
      const Outcome before = RuntimeTextOf(*control);
      const Outcome after = RuntimeTextOf(*again);
      Demand(before.error == after.error,
             "saving and loading changed whether the runtime text fails");
      Demand(page::EqualButForNewGuids(before.text, after.text, RuntimeTextOf(*again).text),
             "saving and loading changed the runtime text");
      DemandSameProperties(*control, *again);
      return;
    }
    control = again;
  }
}

}  // namespace

void CheckBag(std::string_view bytes) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  Bytes story(bytes);
  const ControlClass& contract = ReadClass(story);
  story.Skip('\n');
  StoryBag bag(story, contract);

  const std::shared_ptr<Control> control = contract.create();
  DemandSoundBox(*control);
  bool loaded = true;
  try {
    control->ReadProperties(bag);
  } catch (const RuntimeError&) {
    loaded = false;
  }
  if (contract.readFailure == ReadFailure::skipsKey)
    Demand(loaded, "a class that skips bad keys refused the bag");
  else
    Demand(bag.Failed().size() == (loaded ? 0U : 1U),
           "the key that ended loading was not reported");
  for (const std::string& key : bag.Failed())
    Demand(contract.FindKey(key) != nullptr, "a failed key is unknown to the class");
  if (loaded) return CheckRounds(control);
  DemandSoundBox(*control);
  DemandSteadyText(*control, StoredBy(*control));
}

}  // namespace kvo
