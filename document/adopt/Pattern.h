// Patterns of placeholders, and the placeholders in a page.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "document/adopt/Mapping.h"
#include "document/page/Encoding.h"

namespace kvo::adopt {

bool IsPattern(std::string_view pattern);

struct Placeholder {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::string name;                // UTF-8, as written; empty for a pattern without one
  const Target* target = nullptr;  // of the mapping; nullptr when it does not say
  bool statement = false;          // no placeholder but a statement of the other system
};

// Finds what the mapping names, and unknown placeholders in the common styles. Takes time in
// proportion to the text.
class PlaceholderFinder {
 public:
  // Both must outlive the finder.
  PlaceholderFinder(const Mapping& mapping, const page::PageEncoding& encoding);
  ~PlaceholderFinder();

  std::vector<Placeholder> Find(std::string_view page) const;

  // A pattern, ready to be compared with bytes of a page.
  struct Compiled;

 private:
  const page::PageEncoding& encoding_;
  std::vector<Compiled> patterns_;
  std::vector<std::vector<std::size_t>> byFirst_;  // numbers of patterns, by their first byte
};

}  // namespace kvo::adopt
