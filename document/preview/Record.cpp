#include "document/preview/Record.h"

#include <algorithm>

#include "common/values/Ascii.h"

namespace kvo::preview {
namespace {

template <class Entries>
auto FindNamed(Entries& entries, std::string_view name) {
  return std::ranges::find_if(
      entries, [&](const auto& entry) { return EqualIgnoringCase(entry.first, name); });
}

}  // namespace

const Variant* Values::Find(std::string_view name) const {
  const auto found = FindNamed(all_, name);
  return found == all_.end() ? nullptr : &found->second;
}

void Values::Set(std::string_view name, Variant value) {
  if (const auto found = FindNamed(all_, name); found != all_.end())
    found->second = std::move(value);
  else
    all_.emplace_back(name, std::move(value));
}

const Variant* Record::Find(std::string_view group, std::string_view value) const {
  const auto found = FindNamed(groups, group);
  return found == groups.end() ? nullptr : found->second.Find(value);
}

Values& Record::Group(std::string_view group) {
  if (const auto found = FindNamed(groups, group); found != groups.end()) return found->second;
  return groups.emplace_back(group, Values()).second;
}

}  // namespace kvo::preview
