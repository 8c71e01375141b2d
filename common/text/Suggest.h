// Near misses: the name that somebody probably meant.
#pragma once

#include <span>
#include <string_view>

namespace kvo {

// The candidate nearest to `name` (letters A to Z folded; a swap of neighbours counts as one edit),
// when no more than a third of it has to be edited; empty when none is near. The first of equally
// near ones.
std::string_view Suggest(std::string_view name, std::span<const std::string_view> candidates);

}  // namespace kvo
