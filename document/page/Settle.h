// What is written of a control must give the same text and the same bag when it is read again, or
// the next save would take the text for one edited by hand. A few values do not survive being
// stored: an empty table border comes back as "0".
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "common/frame/Control.h"
#include "common/frame/PropertyBag.h"

namespace kvo::page {

struct Reading {
  // Puts a control's runtime text into `text`; false when the page cannot hold it.
  std::function<bool(const Control& control, std::string& text)> textOf;
  // Reading gave another text; told once.
  std::function<void()> onOtherText;
  // What follows: the text follows the bag until both stay the same, else it is left as it is.
  bool textFollows = false;
};

struct Settled {
  enum class Outcome {
    same,       // the control's bag can be written
    moved,      // `bag` has to be written in its place
    otherText,  // the text would not be the same, and does not follow
    refused,    // textOf() said no
  };
  Outcome outcome = Outcome::same;
  std::vector<MemoryBag::Entry> bag{};
};

// `text` is what the control gives. Where it follows, failures of controls are passed on.
Settled Settle(const Control& control, std::string& text, const Reading& reading);

}  // namespace kvo::page
