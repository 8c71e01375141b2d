#include "document/adopt/BlockContents.h"

#include <algorithm>
#include <string>

#include "controls/BlockLevel.h"

namespace kvo::adopt {
namespace {

// Keeps all offsets.
std::string WithoutMarkers(std::string_view block) {
  std::string text(block);
  for (const std::string_view marker : {kBlockStart, kBlockEnd})
    for (auto at = text.find(marker); at != std::string::npos; at = text.find(marker, at))
      text.replace(at, marker.size(), marker.size(), ' ');
  return text;
}

}  // namespace

void BlockContents::GoTo(std::size_t position) {
  for (; block_ != end_ && block_->end <= position; ++block_) read_.reset();
  inBlock_ = block_ != end_ && block_->begin <= position;
}

const Block* BlockContents::Holding(std::size_t begin, std::size_t end) const {
  const auto range = std::ranges::upper_bound(block_->contents, begin, {}, &Block::Range::end);
  const bool holds = range != block_->contents.end() && range->begin <= begin && end <= range->end;
  return holds ? &*block_ : nullptr;
}

page::Surroundings BlockContents::At(std::size_t position) {
  if (!read_)
    read_.emplace(texts_.emplace_back(
        WithoutMarkers(page_.substr(block_->begin, block_->end - block_->begin))));
  page::Surroundings around = read_->At(position - block_->begin);
  around.begin += block_->begin;
  around.tag += block_->begin;
  return around;
}

}  // namespace kvo::adopt
