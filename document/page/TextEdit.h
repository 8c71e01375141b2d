// Changes of a page's bytes: what fixes, renames and take-overs are made of.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kvo::page {

// Replaces the bytes [begin, end) of a page.
struct TextEdit {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::string bytes;  // in the page's encoding
  bool operator==(const TextEdit&) const = default;
};

// In page order and without overlaps. An edit may begin where the one before ends, but only one may
// insert at a place.
using TextEdits = std::vector<TextEdit>;

// Adds edits; false, adding none, when one of them overlaps one that is there already or inserts at
// the same place. An edit that is there already counts once.
bool Join(TextEdits& edits, const TextEdits& more);

// Returns the page with all edits made.
std::string Applied(std::string_view page, const TextEdits& edits);

}  // namespace kvo::page
