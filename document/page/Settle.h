// Finds a bag that reads back as the same text and the same bag; otherwise the next save would
// consider the text edited by hand. A few values change when stored: an empty table border becomes
// "0".
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "common/frame/Control.h"
#include "common/frame/PropertyBag.h"

namespace kvo::page {

struct Reading {
  // Writes a control's runtime text to `text`; false when the page cannot hold it.
  std::function<bool(const Control& control, std::string& text)> textOf;
  // Called once if reading back gives another text.
  std::function<void()> onOtherText;
  // Whether the text changes with the bag until both are stable; otherwise it is left unchanged.
  bool textFollows = false;
};

struct Settled {
  enum class Outcome {
    same,       // the control's bag can be written
    moved,      // write `bag` instead
    otherText,  // the text would change, and may not
    refused,    // textOf() returned false
  };
  Outcome outcome = Outcome::same;
  std::vector<MemoryBag::Entry> bag{};
};

// `text` is the control's text. Passes on failures of controls if textFollows.
Settled Settle(const Control& control, std::string& text, const Reading& reading);

}  // namespace kvo::page
