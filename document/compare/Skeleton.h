// The text of a page with a word in place of each control, which a line merge can work on.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "document/compare/Version.h"

namespace kvo::compare {

// Which version of a control a word stands for: the merged one, or that of one side of a conflict.
enum class Which : char { merged = 'm', base = 'b', ours = 'o', theirs = 't' };

struct Word {
  std::size_t control = 0;
  Which which = Which::merged;
  bool operator==(const Word&) const = default;
};

// The words for controls in texts that must not contain them.
class Words {
 public:
  explicit Words(std::span<const std::string_view> texts);

  std::string Of(const Word& word) const;

  // A text divided at its words: `before` each, and after the last.
  struct Part {
    std::string_view before;
    std::optional<Word> word;
  };
  std::vector<Part> Divide(std::string_view text) const;

 private:
  std::string begin_;
};

// A line merge's result, divided at its conflict markers.
struct Region {
  bool conflict = false;
  std::string text;  // without a conflict

  // Of a conflict: the marker lines, of which that of the base may be missing, and what is between.
  std::string oursMarker, ours;
  std::string baseMarker, base;
  std::string theirsMarker, theirs;
  std::string endMarker;
};
// The markers are of this size, which begins no line of the merged texts.
std::vector<Region> DivideAtMarkers(std::string_view merged, std::size_t markerSize);

// Returns a size for markers that begin no line of the texts.
std::size_t UnusedMarkerSize(std::span<const std::string_view> texts);
// Whether a text holds an unresolved conflict.
bool HoldsMarkers(std::string_view text, std::size_t markerSize);

}  // namespace kvo::compare
