#include "common/Suggest.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "common/Ascii.h"

namespace kvo {
namespace {

// Longer texts are no names that somebody mistyped.
constexpr std::size_t kLongest = 48;

// Edits (insert, delete, replace, swap neighbours) that make one text of the other. Neither is
// longer than kLongest.
std::size_t EditDistance(std::string_view a, std::string_view b) {
  using Distances = std::array<std::size_t, kLongest + 1>;
  Distances beforePrevious{};
  Distances previous{};
  Distances current{};
  for (std::size_t j = 0; j <= b.size(); ++j) previous[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    current[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const char x = LowerAscii(a[i - 1]);
      const char y = LowerAscii(b[j - 1]);
      current[j] = std::min({previous[j] + 1, current[j - 1] + 1, previous[j - 1] + (x != y)});
      if (i > 1 && j > 1 && x == LowerAscii(b[j - 2]) && y == LowerAscii(a[i - 2]))
        current[j] = std::min(current[j], beforePrevious[j - 2] + 1);
    }
    beforePrevious = previous;
    previous = current;
  }
  return previous[b.size()];
}

}  // namespace

std::string_view Suggest(std::string_view name, std::span<const std::string_view> candidates) {
  if (name.empty() || name.size() > kLongest) return {};
  std::string_view best;
  std::size_t bestDistance = std::max<std::size_t>(name.size() / 3, 1) + 1;
  for (const std::string_view candidate : candidates) {
    const auto [shorter, longer] = std::minmax({candidate.size(), name.size()});
    if (candidate.size() > kLongest || longer - shorter >= bestDistance) continue;
    const std::size_t distance = EditDistance(name, candidate);
    if (distance >= bestDistance) continue;
    best = candidate;
    bestDistance = distance;
  }
  return best;
}

}  // namespace kvo
