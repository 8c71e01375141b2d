#include "common/text/Suggest.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "common/values/Ascii.h"

namespace kvo {
namespace {

// Longer texts are not mistyped names.
constexpr std::size_t kLongest = 48;

// Counts each letter of a text: a cheap way to tell that two texts are not near.
class Letters {
 public:
  explicit Letters(std::string_view text) : size_(text.size()) {
    for (const char c : text) ++counts_[IndexOf(c)];
  }

  // A lower bound for the edits between two texts: each edit adds at most one common letter.
  std::size_t LeastEdits(std::string_view other) const {
    std::array<std::uint8_t, kKinds> left = counts_;
    std::size_t shared = 0;
    for (const char c : other) {
      std::uint8_t& count = left[IndexOf(c)];
      if (count == 0) continue;
      --count;
      ++shared;
    }
    return std::max(size_, other.size()) - shared;
  }

 private:
  // Letters that share a slot only lower the bound.
  static constexpr std::size_t kKinds = 64;
  static std::size_t IndexOf(char c) { return static_cast<unsigned char>(LowerAscii(c)) % kKinds; }

  std::size_t size_;
  std::array<std::uint8_t, kKinds> counts_{};
};

// Counts the edits (insert, delete, replace, swap neighbours) from one text to the other; returns
// some number from `limit` on when there are at least that many. Both texts are in lower case and
// at most kLongest long.
std::size_t EditDistance(std::string_view a, std::string_view b, std::size_t limit) {
  std::array<std::array<std::size_t, kLongest + 1>, 3> rows{};  // used in turn
  for (std::size_t j = 0; j <= b.size(); ++j) rows[0][j] = j;
  std::size_t previousLeast = 0;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    auto& current = rows[i % 3];
    const auto& previous = rows[(i + 2) % 3];
    const auto& beforePrevious = rows[(i + 1) % 3];
    const char x = a[i - 1];
    std::size_t least = current[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const char y = b[j - 1];
      std::size_t edits =
          std::min(std::min(previous[j], current[j - 1]) + 1, previous[j - 1] + (x == y ? 0 : 1));
      if (i > 1 && j > 1 && x == b[j - 2] && y == a[i - 2])
        edits = std::min(edits, beforePrevious[j - 2] + 1);
      current[j] = edits;
      least = std::min(least, edits);
    }
    // Each row follows from the two before it.
    if (least >= limit && previousLeast + 1 >= limit) return limit;
    previousLeast = least;
  }
  return rows[a.size() % 3][b.size()];
}

}  // namespace

Suggestion SuggestNear(std::string_view name, std::span<const std::string_view> candidates) {
  if (name.empty() || name.size() > kLongest) return {};
  Suggestion best;
  const std::size_t limit = std::max<std::size_t>(name.size() / 3, 1) + 1;
  std::size_t bestDistance = limit;
  const std::string folded = Lowered(name);
  const Letters letters(folded);
  for (const std::string_view candidate : candidates) {
    const auto [shorter, longer] = std::minmax({candidate.size(), name.size()});
    if (candidate.size() > kLongest || longer - shorter >= limit) continue;
    if (letters.LeastEdits(candidate) >= limit || candidate == best.name) continue;
    const std::size_t distance = EditDistance(folded, Lowered(candidate), limit);
    if (distance >= limit) continue;
    best.only = best.name.empty();
    if (distance >= bestDistance) continue;
    best.name = candidate;
    bestDistance = distance;
  }
  return best;
}

std::string_view Suggest(std::string_view name, std::span<const std::string_view> candidates) {
  return SuggestNear(name, candidates).name;
}

}  // namespace kvo
