// The runtime tags in a published page: which kind each is, and what belongs to it.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "document/page/Page.h"

namespace kvo::preview {

enum class TagKind {
  print,
  contact,
  order,
  config,
  element,
  script,
  condition,
  otherwise,  // the part of a condition for when it does not hold
  products,
  positions,
  click,
  view,
  unsubscribe,
  unknown,  // of the template language, but none of the above
  failed,   // the place of a control that could not be published
};

// The class of the controls that write such tags; empty when there is none.
std::string_view ClassOf(TagKind kind);

// A tag with what stands in it. Offsets are into the published page.
struct RuntimeTag {
  TagKind kind = TagKind::unknown;
  std::string name;                                             // with its prefix
  std::vector<std::pair<std::string, std::string>> attributes;  // UTF-8, references resolved
  std::size_t begin = 0;  // of the tag; its markers are outside
  std::size_t contentBegin = 0;
  std::size_t contentEnd = 0;
  std::size_t end = 0;
  // The control that wrote the tag; kNoPart for one that was written by hand.
  std::size_t part = kNoPart;
  enum class Mistake { none, quote, unended, unclosed, stray, deep };
  Mistake mistake = Mistake::none;
  std::vector<RuntimeTag> inner;  // in the content, in order

  static constexpr std::size_t kNoPart = static_cast<std::size_t>(-1);

  // The first attribute of this name; nullptr when there is none.
  const std::string* Find(std::string_view attribute) const;
};

// A page's tags, and the markers around blocks, which vanish.
struct RuntimeTags {
  std::vector<RuntimeTag> tags;
  struct Marker {
    std::size_t begin;
    std::size_t end;
  };
  std::vector<Marker> markers;  // in page order
};

// The prefixes of tags, such as "kv:".
using TagPrefixes = std::set<std::string, std::less<>>;

// Finds the tags with the prefix "kv:", those of the page's controls and the given ones. Takes time
// in proportion to the page. Tags nested deeper than a hundred levels are unknown.
RuntimeTags FindRuntimeTags(const page::PublishedPage& page, const page::PageEncoding& encoding,
                            TagPrefixes prefixes = {});

}  // namespace kvo::preview
