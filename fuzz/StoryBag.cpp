#include "fuzz/StoryBag.h"

#include <stdexcept>

#include "common/values/RuntimeError.h"
#include "host/registration/classes.h"

namespace kvo {
namespace {

std::string_view ReadKey(Bytes& story, const ControlClass& contract) {
  if (story.Skip('.')) {
    const ControlClass& other = ReadClass(story);
    return other.bag[story.Below(other.bag.size())].key;
  }
  constexpr char kFirst = 'a';
  const auto number = static_cast<unsigned char>(story.Next() - kFirst);
  return contract.bag[number % contract.bag.size()].key;
}

Variant ReadValue(char kind, const std::string& text) {
  switch (kind) {
    case '=':
      return text;
    case '#': {
      const double number = ParseNumber(text).value_or(0);
      if (number == 7) return 7;  // a host passes whole numbers as another type
      return number;
    }
    case '+':
      return true;
    case '-':
      return false;
    case '@':
      return ObjectRef(std::make_shared<Collection>());
    default:
      return {};
  }
}

}  // namespace

const ControlClass& ReadClass(Bytes& story) {
  const auto controls = RegisteredControls();
  return controls[story.Below(controls.size())].contract();
}

StoryBag::StoryBag(Bytes& story, const ControlClass& contract) : contract_(contract) {
  while (!story.AtEnd() && !story.Skip('\n')) {
    const std::string_view key = ReadKey(story, contract);
    const char kind = story.OneOf("=#+-?@!");
    entries_.push_back({key, ReadValue(kind, story.Text()), kind != '!'});
  }
}

void StoryBag::KeyFailed(std::string_view key, const std::exception&) { failed_.emplace_back(key); }

std::optional<std::string_view> StoryBag::Find(std::string_view key) {
  for (const Entry& entry : entries_) {
    if (entry.key != key) continue;
    if (!entry.readable) throw RuntimeError(ErrorNumber::invalidCall, std::string(key));
    return found_ = StoredText(*contract_.FindKey(key), entry.value);
  }
  return std::nullopt;
}

void StoryBag::Store(std::string_view, std::string_view) {
  throw std::logic_error("a control wrote to the bag it was loaded from");
}

std::vector<MemoryBag::Entry> StoredBy(const Control& control) {
  MemoryBag bag;
  control.WriteProperties(bag);
  return bag.Entries();
}

}  // namespace kvo
