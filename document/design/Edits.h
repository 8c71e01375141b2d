// Collects edits of one state of the source.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "document/design/Changes.h"

namespace kvo::design {

class Edits {
 public:
  void Replace(std::size_t begin, std::size_t end, std::u16string text);
  void Remove(std::size_t begin, std::size_t end) { Replace(begin, end, {}); }
  void Insert(std::size_t at, std::u16string text) { Replace(at, at, std::move(text)); }

  // `begin` and `end` are places in the old source. A selection stays inside of what was inserted
  // around it; a caret goes behind it, but not behind end tags.
  std::optional<Change> Finish(std::size_t begin, std::size_t end);

 private:
  std::vector<Edit> edits_;
};

}  // namespace kvo::design
