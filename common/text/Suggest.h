// Suggests the name that a user probably meant.
#pragma once

#include <span>
#include <string_view>

namespace kvo {

// Returns the candidate nearest to `name`, the first one of several; empty when more than a third
// of `name` would have to be edited. Ignores case; swapping two neighbours counts as one edit.
std::string_view Suggest(std::string_view name, std::span<const std::string_view> candidates);

// The same, and whether it is the only candidate that is near enough.
struct Suggestion {
  std::string_view name;
  bool only = false;
};
Suggestion SuggestNear(std::string_view name, std::span<const std::string_view> candidates);

}  // namespace kvo
