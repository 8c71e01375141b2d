// A plain three-way merge of lines, in place of the one that programs use.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "document/compare/Align.h"
#include "document/compare/Merge.h"

namespace kvo::compare {

inline std::optional<MergedText> MergeLines(std::string_view base, std::string_view ours,
                                            std::string_view theirs, std::size_t markerSize) {
  std::map<std::string_view, std::size_t> numbers;
  std::vector<std::string_view> texts[3];
  std::vector<std::size_t> lines[3];
  const std::string_view pages[3] = {base, ours, theirs};
  for (int side = 0; side < 3; ++side)
    for (std::string_view rest = pages[side]; !rest.empty();) {
      const std::size_t size = std::min(rest.find('\n'), rest.size() - 1) + 1;
      texts[side].push_back(rest.substr(0, size));
      lines[side].push_back(numbers.try_emplace(texts[side].back(), numbers.size()).first->second);
      rest.remove_prefix(size);
    }
  std::map<std::size_t, std::size_t> inTheirs;
  for (const Match& match : Align(lines[0], lines[2])) inTheirs[match.a] = match.b;
  MergedText merged;
  std::size_t from[3] = {0, 0, 0};
  const auto append = [&](int side, std::size_t to) {
    for (std::size_t at = from[side]; at < to; ++at) merged.bytes += texts[side][at];
  };
  const auto marker = [&](char c) {
    if (!merged.bytes.empty() && !merged.bytes.ends_with('\n')) merged.bytes += '\n';
    merged.bytes.append(markerSize, c).append(" side\n");
  };
  const auto mergeChunk = [&](std::size_t toBase, std::size_t toOurs, std::size_t toTheirs) {
    const std::size_t to[3] = {toBase, toOurs, toTheirs};
    const auto same = [&](int a, int b) {
      return std::equal(lines[a].begin() + static_cast<std::ptrdiff_t>(from[a]),
                        lines[a].begin() + static_cast<std::ptrdiff_t>(to[a]),
                        lines[b].begin() + static_cast<std::ptrdiff_t>(from[b]),
                        lines[b].begin() + static_cast<std::ptrdiff_t>(to[b]));
    };
    if (same(0, 1)) {
      append(2, to[2]);
    } else if (same(0, 2) || same(1, 2)) {
      append(1, to[1]);
    } else {
      merged.hasConflicts = true;
      marker('<');
      append(1, to[1]);
      marker('=');
      append(2, to[2]);
      marker('>');
    }
  };
  for (const Match& match : Align(lines[0], lines[1])) {
    const auto found = inTheirs.find(match.a);
    if (found == inTheirs.end()) continue;
    mergeChunk(match.a, match.b, found->second);
    merged.bytes += texts[0][match.a];
    from[0] = match.a + 1;
    from[1] = match.b + 1;
    from[2] = found->second + 1;
  }
  mergeChunk(lines[0].size(), lines[1].size(), lines[2].size());
  return merged;
}

}  // namespace kvo::compare
