// The tags of HTML elements in a page: their attributes, and which end tag belongs to which start
// tag.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/page/Page.h"

namespace kvo::adopt {

struct ElementTag {
  struct Attribute {
    std::string_view name;  // as written
    std::string_view value;
    bool hasValue = false;
    std::size_t begin = 0;  // of the value with its quotes
    std::size_t end = 0;
  };

  std::string_view name;
  std::size_t begin = 0;
  std::size_t end = 0;
  std::vector<Attribute> attributes;
  bool isVoid = false;  // an element without content and end tag
};
// Nothing when no start tag begins there, or it does not end.
std::optional<ElementTag> ElementTagAt(std::string_view page, std::size_t begin);

struct EndTag {
  std::size_t begin = 0;
  std::size_t end = 0;
};
// Pairs the tags of a page in one pass, each end tag with the latest open element of its name.
class EndTags {
 public:
  EndTags(std::string_view page, const page::Inspection& inspection);

  // Of the element whose start tag begins there.
  std::optional<EndTag> Of(std::size_t startTag) const;
  // Whether every end tag in [begin, end) belongs to an element that begins there, too.
  bool AreBalanced(std::size_t begin, std::size_t end) const;

 private:
  std::map<std::size_t, EndTag> byStart_;
  std::map<std::size_t, std::size_t> startOf_;  // by the beginning of the end tag
};

}  // namespace kvo::adopt
