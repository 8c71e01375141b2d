// A property bag with whatever a host may hand over: texts, other values, keys that cannot be read.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "common/frame/Control.h"
#include "fuzz/Bytes.h"

namespace kvo {

// The class that the next byte chooses.
const ControlClass& ReadClass(Bytes& story);

// One line for each key, to an empty line or the end: which key, what kind of value, its text.
//   key    a letter: the class's own, "a" the first; ".nm": the m-th of the n-th class
//   value  =text #number +true -false ?empty @an object !cannot be read
class StoryBag final : public PropertyBag {
 public:
  StoryBag(Bytes& story, const ControlClass& contract);

  // The keys that failed while a control was loaded.
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
