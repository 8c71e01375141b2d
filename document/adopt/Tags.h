// The runtime tags of a page that become controls.
#pragma once

#include <vector>

#include "document/adopt/Adopt.h"
#include "document/adopt/Making.h"

namespace kvo::adopt {

// A tag with markers around it, and the parts of its content that the engine reads as HTML: neither
// runtime tags nor scripts.
struct Block {
  struct Range {
    std::size_t begin;
    std::size_t end;
  };
  std::size_t begin = 0;  // with its markers
  std::size_t end = 0;
  std::vector<Range> contents;  // in page order
};

// All in page order.
struct FoundTags {
  std::vector<Find> finds;    // without places yet
  std::vector<Block> blocks;  // those in other blocks are a part of them
};
FoundTags FindTags(const page::Page& page, const page::Inspection& inspection,
                   const Mapping& mapping, const FieldCaptions& captions);

}  // namespace kvo::adopt
