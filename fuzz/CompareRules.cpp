#include "fuzz/CompareRules.h"

#include <algorithm>
#include <array>
#include <set>
#include <string>

#include "document/compare/Compare.h"
#include "document/compare/Merge.h"
#include "fuzz/Demand.h"
#include "fuzz/LineMerge.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo::compare {
namespace {

using Pages = std::array<std::string, 3>;

Pages PagesOf(std::string_view input) {
  constexpr std::string_view kDivider = "%\n";
  Pages pages;
  for (std::size_t i = 0; i < 2; ++i) {
    const std::size_t size = std::min(input.find(kDivider), input.size());
    pages[i] = input.substr(0, size);
    input.remove_prefix(std::min(size + kDivider.size(), input.size()));
  }
  pages[2] = input;
  return pages;
}

using Value = std::pair<std::string_view, std::string>;  // a key and its value

std::set<Value> ValuesIn(const Version& version) {
  std::set<Value> values;
  for (const page::FoundControl& control : version.Controls()) {
    values.insert({"id", control.id});
    for (const PropertyRow& row : control.contract->bag) {
      const auto found = std::ranges::find(control.bag, row.key, &MemoryBag::Entry::first);
      values.insert(
          {row.key, found == control.bag.end() ? std::string(row.readDefault) : found->second});
    }
  }
  return values;
}

// Every value that a side brings is in the result, or the whole control that has it.
void DemandNothingLost(const Version& base, const Version& side, const Merged& merged) {
  const Version result(merged.bytes);
  const std::set<Value> old = ValuesIn(base);
  const std::set<Value> now = ValuesIn(result);
  for (const page::FoundControl& control : side.Controls()) {
    if (merged.bytes.find(side.BytesOf(control)) != std::string::npos) continue;
    for (const auto& [key, value] : control.bag)
      Demand(old.contains({key, value}) || now.contains({key, value}),
             "a side's value is lost: " + key + "=" + value);
  }
}

void CheckPair(const Version& a, const Version& b) {
  const auto differences = Compare(a, b);
  Demand(differences.empty() == (a.Bytes() == b.Bytes()), "a difference is not told");
  for (const Difference& difference : differences)
    Demand(!Describe(difference).empty(), "a difference has no words");
}

}  // namespace

void CheckCompare(std::string_view input) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  const Pages pages = PagesOf(input);
  const Version base(pages[0]);
  const Version ours(pages[1]);
  const Version theirs(pages[2]);
  CheckPair(base, ours);
  CheckPair(ours, theirs);
  Readable(ours);

  const Merged merged = Merge(pages[0], pages[1], pages[2], MergeLines, 7);
  if (merged.asText) return;
  DemandNothingLost(base, ours, merged);
  DemandNothingLost(base, theirs, merged);
  if (merged.IsClean() && !ours.IsBroken() && !theirs.IsBroken())
    Demand(!Version(merged.bytes).IsBroken(), "the merged page cannot be read");
}

}  // namespace kvo::compare
