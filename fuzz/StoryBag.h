// A property bag with anything a host may pass: texts, other values, unreadable keys.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "common/frame/Control.h"
#include "fuzz/Bytes.h"

namespace kvo {

// Returns the class that the next byte selects.
const ControlClass& ReadClass(Bytes& story);

// Reads one line for each key, up to an empty line or the end: the key, the kind of value and its
// text.
//   key    a letter for one of the class's own, from "a"; ".nm" for the m-th of the n-th class
//   value  =text #number +true -false ?empty @an object !cannot be read
class StoryBag final : public PropertyBag {
 public:
  StoryBag(Bytes& story, const ControlClass& contract);

  // The keys that failed during loading.
  const std::vector<std::string>& Failed() const { return failed_; }
  void KeyFailed(std::string_view key, const std::exception& error) override;

 protected:
  std::optional<std::string_view> Find(std::string_view key) override;
  void Store(std::string_view key, std::string_view value) override;

 private:
  struct Entry {
    std::string_view key;
    Variant value;
    bool readable;
  };
  const ControlClass& contract_;
  std::vector<Entry> entries_;
  std::string found_;
  std::vector<std::string> failed_;
};

std::vector<MemoryBag::Entry> StoredBy(const Control& control);

}  // namespace kvo
