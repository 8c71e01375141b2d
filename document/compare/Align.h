// Aligns two sequences, as a line diff does.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace kvo::compare {

inline constexpr std::size_t kNone = static_cast<std::size_t>(-1);

struct Match {
  std::size_t a;
  std::size_t b;
  bool operator==(const Match&) const = default;
};

// Returns pairs of equal elements, ascending in both sequences. Prefers elements that occur once in
// each, so that repeated lines do not shift. Takes nearly linear time; in long parts without such
// elements it finds only a common beginning and end.
std::vector<Match> Align(std::span<const std::size_t> a, std::span<const std::size_t> b);

}  // namespace kvo::compare
