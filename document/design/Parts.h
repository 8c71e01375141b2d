// What changes of a page have in common: questions about a part of its source, tags, and removing.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/design/Edits.h"
#include "document/design/Rendering.h"

namespace kvo::design {

// Parts of tables: they are emptied, never removed without their table.
inline constexpr std::string_view kCells = "td th tr tbody thead tfoot caption colgroup col";

std::u16string FromAscii(std::string_view ascii);

// Questions about a page and a part of its source.
class SourcePart {
 public:
  SourcePart(const Rendering& page, std::size_t begin, std::size_t end)
      : page_(page), begin_(begin), end_(end) {}

  const Node& At(NodeIndex node) const { return page_.At(node); }

  bool Overlaps(const Node& node) const { return node.begin < end_ && begin_ < node.end; }
  bool Holds(const Node& node) const { return begin_ <= node.begin && node.end <= end_; }

  // Whether something moved by the parser is in the part.
  bool TouchesLocked() const;
  // Whether it shows something without having children.
  static bool IsThing(const Node& node);
  // Calls for each text that is not blank and each thing in the part, with its place.
  void EachLeaf(const auto& call) const {
    const auto count = static_cast<NodeIndex>(page_.Nodes().size());
    for (NodeIndex node = 0; node < count; ++node) {
      const Node& each = At(node);
      if (!Overlaps(each)) continue;
      if (each.kind == Node::Kind::text)
        call(node, std::max(begin_, each.begin), std::min(end_, each.end));
      else if (IsThing(each) && Holds(each))
        call(node, each.begin, each.end);
    }
  }
  // Whether there is a thing or a text that is more than blanks.
  bool HasContent() const;

 private:
  const Rendering& page_;
  std::size_t begin_;
  std::size_t end_;
};

// Returns the innermost element around a node, or the node itself, that is not inline; kNoNode if
// there is none.
NodeIndex BlockAround(const Rendering& page, NodeIndex node);
// Returns the elements around a node up to `top`, which is left out; the innermost first.
std::vector<NodeIndex> ElementsBelow(const Rendering& page, NodeIndex node, NodeIndex top);

// The tags of an element as it writes them.
std::u16string StartTag(const Rendering& page, const Node& node);
std::u16string EndTag(const Rendering& page, const Node& node);
// A start tag for a second element like the first: an id is never given twice.
std::u16string StartTagAgain(const Rendering& page, const Node& node);

// The place of an attribute in a tag, from the blank before its name to its end; the value without
// its quotes.
struct AttributePlace {
  std::size_t begin;
  std::size_t end;
  std::size_t valueBegin;
  std::size_t valueEnd;
};
std::optional<AttributePlace> FindAttribute(std::u16string_view tag, std::string_view name);

// Removes what is in a part of the source but the tags that enclose other things, too.
void Erase(const Rendering& page, std::size_t begin, std::size_t end, Edits& edits);

// Returns the `br` that only holds an empty line open: it is last in its block, and nothing is
// between it and the line's start.
std::optional<NodeIndex> Placeholder(const Rendering& page, const Point& point);

}  // namespace kvo::design
