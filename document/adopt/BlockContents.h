// The contents of blocks as the engine reads them: without the markers, which make a comment of a
// block.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string_view>
#include <vector>

#include "document/adopt/Tags.h"
#include "document/page/Surroundings.h"

namespace kvo::adopt {

class BlockContents {
 public:
  // Both must outlive it.
  BlockContents(std::string_view page, const std::vector<Block>& blocks)
      : page_(page), block_(blocks.begin()), end_(blocks.end()) {}

  // Positions must ascend.
  void GoTo(std::size_t position);
  bool IsInBlock() const { return inBlock_; }
  // The current block if it holds a part of the page in its content; else nullptr.
  const Block* Holding(std::size_t begin, std::size_t end) const;
  // What surrounds a position in the current block. The name lives as long as this object.
  page::Surroundings At(std::size_t position);

 private:
  std::string_view page_;
  std::vector<Block>::const_iterator block_;
  std::vector<Block>::const_iterator end_;
  bool inBlock_ = false;
  std::deque<page::Page> texts_;
  std::optional<page::PageSurroundings> read_;  // of the current block
};

}  // namespace kvo::adopt
