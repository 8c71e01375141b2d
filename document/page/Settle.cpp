#include "document/page/Settle.h"

#include <memory>

#include "common/values/RuntimeError.h"
#include "document/page/NewGuids.h"
#include "document/page/Page.h"

namespace kvo::page {

Settled Settle(const Control& control, std::string& text, const Reading& reading) {
  using enum Settled::Outcome;
  constexpr int kMostRounds = 4;
  Settled settled{same, StoredBag(control)};
  const Control* giver = &control;  // returned the text
  std::shared_ptr<Control> kept;
  bool told = false;
  std::string nextText;
  std::string again;
  for (int round = 0; round < kMostRounds; ++round) {
    std::shared_ptr<Control> next;
    bool sameText = false;
    try {
      next = Load(control.Class(), settled.bag);
      if (!reading.textOf(*next, nextText)) return {refused};
      sameText = nextText == text ||
                 (reading.textOf(*giver, again) && EqualButForNewGuids(nextText, text, again));
    } catch (const RuntimeError&) {
      if (reading.textFollows) throw;
    }
    if (!sameText) {
      if (!told) reading.onOtherText();
      told = true;
      if (!reading.textFollows) return {otherText};
      text.swap(nextText);
      kept = next;
      giver = kept.get();
    }
    std::vector<MemoryBag::Entry> bag = StoredBag(*next);
    if (bag == settled.bag) break;
    settled = {moved, std::move(bag)};
  }
  return settled;
}

}  // namespace kvo::page
