#include "document/compare/Align.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

namespace kvo::compare {
namespace {

// Ranges [aBegin, aEnd) and [bBegin, bEnd) that are still to be aligned.
struct Range {
  std::size_t aBegin, aEnd, bBegin, bEnd;
  int depth;
};

// Returns the longest part of the matches, which ascend in `a`, that ascends in `b`, too.
std::vector<Match> Ascending(const std::vector<Match>& matches) {
  std::vector<std::size_t> tails;  // indices of matches: the smallest end of each length
  std::vector<std::size_t> before(matches.size(), kNone);
  for (std::size_t i = 0; i < matches.size(); ++i) {
    const auto at = std::ranges::lower_bound(tails, matches[i].b, {},
                                             [&](std::size_t tail) { return matches[tail].b; });
    if (at != tails.begin()) before[i] = *(at - 1);
    if (at == tails.end())
      tails.push_back(i);
    else
      *at = i;
  }
  std::vector<Match> ascending(tails.size());
  std::size_t at = tails.empty() ? kNone : tails.back();
  for (auto each = ascending.rbegin(); each != ascending.rend(); ++each, at = before[at])
    *each = matches[at];
  return ascending;
}

class Aligner {
 public:
  Aligner(std::span<const std::size_t> a, std::span<const std::size_t> b) : a_(a), b_(b) {}

  std::vector<Match> Run() {
    todo_.push_back({0, a_.size(), 0, b_.size(), 0});
    while (!todo_.empty()) {
      const Range range = todo_.back();
      todo_.pop_back();
      AlignRange(range);
    }
    std::ranges::sort(matches_, {}, &Match::a);
    return std::move(matches_);
  }

 private:
  void AlignRange(Range range) {
    while (range.aBegin < range.aEnd && range.bBegin < range.bEnd &&
           a_[range.aBegin] == b_[range.bBegin])
      matches_.push_back({range.aBegin++, range.bBegin++});
    while (range.aBegin < range.aEnd && range.bBegin < range.bEnd &&
           a_[range.aEnd - 1] == b_[range.bEnd - 1])
      matches_.push_back({--range.aEnd, --range.bEnd});
    if (range.aBegin == range.aEnd || range.bBegin == range.bEnd) return;
    // Each level takes time in proportion to the range, so their number is limited.
    constexpr int kMostDepth = 32;
    const std::vector<Match> anchors =
        range.depth < kMostDepth ? Ascending(Unique(range)) : std::vector<Match>();
    if (anchors.empty()) return AlignWhole(range);
    Range before = range;
    ++before.depth;
    for (const Match& anchor : anchors) {
      before.aEnd = anchor.a;
      before.bEnd = anchor.b;
      todo_.push_back(before);
      matches_.push_back(anchor);
      before.aBegin = anchor.a + 1;
      before.bBegin = anchor.b + 1;
    }
    before.aEnd = range.aEnd;
    before.bEnd = range.bEnd;
    todo_.push_back(before);
  }

  // Returns the elements that occur once in each range.
  std::vector<Match> Unique(const Range& range) const {
    struct Seen {
      std::size_t inA = 0;
      std::size_t inB = 0;
      std::size_t b = 0;
    };
    std::unordered_map<std::size_t, Seen> seen;
    for (std::size_t i = range.aBegin; i < range.aEnd; ++i) ++seen[a_[i]].inA;
    for (std::size_t i = range.bBegin; i < range.bEnd; ++i) {
      const auto found = seen.find(b_[i]);
      if (found == seen.end()) continue;
      ++found->second.inB;
      found->second.b = i;
    }
    std::vector<Match> unique;
    for (std::size_t i = range.aBegin; i < range.aEnd; ++i) {
      const Seen& each = seen.at(a_[i]);
      if (each.inA == 1 && each.inB == 1) unique.push_back({i, each.b});
    }
    return unique;
  }

  // Finds the longest common subsequence of small ranges.
  void AlignWhole(const Range& range) {
    constexpr std::size_t kMostCells = 1U << 20U;
    const std::size_t rows = range.aEnd - range.aBegin;
    const std::size_t columns = range.bEnd - range.bBegin;
    if (rows > kMostCells / columns) return;
    const std::size_t width = columns + 1;
    std::vector<std::uint32_t> longest((rows + 1) * width);  // of the rests from here
    const auto same = [&](std::size_t row, std::size_t column) {
      return a_[range.aBegin + row] == b_[range.bBegin + column];
    };
    for (std::size_t row = rows; row-- > 0;)
      for (std::size_t column = columns; column-- > 0;) {
        const std::size_t at = row * width + column;
        longest[at] = same(row, column) ? longest[at + width + 1] + 1
                                        : std::max(longest[at + width], longest[at + 1]);
      }
    for (std::size_t row = 0, column = 0; row < rows && column < columns;) {
      const std::size_t at = row * width + column;
      if (same(row, column))
        matches_.push_back({range.aBegin + row++, range.bBegin + column++});
      else if (longest[at + width] >= longest[at + 1])
        ++row;
      else
        ++column;
    }
  }

  std::span<const std::size_t> a_;
  std::span<const std::size_t> b_;
  std::vector<Range> todo_;
  std::vector<Match> matches_;
};

}  // namespace

std::vector<Match> Align(std::span<const std::size_t> a, std::span<const std::size_t> b) {
  return Aligner(a, b).Run();
}

}  // namespace kvo::compare
