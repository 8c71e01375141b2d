// Merges the changes that two sides made to a page.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/values/Localized.h"

namespace kvo::compare {

struct MergedText {
  std::string bytes;  // with conflict markers
  bool hasConflicts = false;
};
// Merges three texts line by line, with conflict markers of the given size. Returns nothing for
// what is no text.
using TextMerge = std::function<std::optional<MergedText>(
    std::string_view base, std::string_view ours, std::string_view theirs, std::size_t markerSize)>;

struct Merged {
  std::string bytes;
  // What both sides changed, on one line each: "Preis: Format: #,##0.00 | #,##0.0".
  std::vector<Message> conflicts;
  bool textConflicts = false;  // outside the controls, or there were no controls to merge
  // Why the pages were merged as mere text, if they were.
  std::optional<Message> asText;

  bool IsClean() const { return conflicts.empty() && !textConflicts; }
};

// Merges text as `mergeText` does, and controls by property: changes of different properties of one
// control, or of different controls in one line, do not conflict. Of the lines of a conflict each
// side is written, between markers; controls that merged are merged in both. Nothing that one side
// changed is lost without a conflict. Pages that hold broken controls, differ in their encoding or
// hold conflict markers are merged as mere text. `markerSize` is that of the caller's markers.
Merged Merge(std::string_view base, std::string_view ours, std::string_view theirs,
             const TextMerge& mergeText, std::size_t markerSize);

}  // namespace kvo::compare
