// A page as a browser renders it, and where in its source everything stands. The places come from a
// parser that reports them; a rendered place is found by walking that parser's tree in step with
// the browser's. Where the two trees differ, or where a parser had to move or copy something,
// nothing is guessed: the place is not found.
//
// The source is the page's text as it is edited, in UTF-16 code units. Line ends are single line
// feeds. What is shown as a box is known to stand at its place, however it is written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/design/RenderedText.h"

namespace kvo::design {

// A part of the source that is shown as a box.
struct BoxPlace {
  std::size_t position = 0;
  std::size_t length = 1;
  bool operator==(const BoxPlace&) const = default;
};

// The currency of changes: a part of the source and what takes its place.
struct Edit {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::u16string text;
};

// A place in the browser's tree, as the script in the view reports it. Adjoining texts count as
// one, and white space between elements, which parsers divide differently, does not count as a
// child.
struct RenderedPlace {
  struct Level {
    std::uint32_t child = 0;  // its number
    std::uint32_t names = 0;  // HashNames of the children of the same parent
  };
  // From the html element down. The last level has the text, or the child that the place is before;
  // a number after the last child is the end of the parent.
  std::vector<Level> path;
  enum class Kind {
    text,   // in a text
    blank,  // in the white space before a child
    gap,    // before a child, without white space
  };
  Kind kind = Kind::gap;
  std::size_t offset = 0;  // in the text or the white space
  std::uint32_t hash = 0;  // Hash of the text or the white space
};

// FNV-1a over the code units.
constexpr std::uint32_t kHashStart = 2166136261U;
constexpr std::uint32_t Hash(const auto& text, std::uint32_t hash = kHashStart) {
  for (const auto c : text) hash = (hash ^ static_cast<char16_t>(c)) * 16777619U;
  return hash;
}

// Elements in which parsers move texts out of the table.
inline constexpr std::string_view kTableParts = "table tbody thead tfoot tr colgroup";

using NodeIndex = std::uint32_t;
inline constexpr NodeIndex kNoNode = 0xFFFFFFFF;

struct Node {
  enum class Kind : std::uint8_t { element, text, blank, comment, box, opaque };
  Kind kind = Kind::element;
  // The parser moved, copied or invented it, or something around it.
  bool locked = false;
  bool empty = false;  // an element that never has children, such as br
  bool hasStartTag = false;
  bool hasEndTag = false;
  NodeIndex parent = kNoNode;
  NodeIndex next = 0;  // the first node after its descendants
  std::string name;    // of elements, in lower case
  // In the source. Between contentBegin and contentEnd stands what the tags enclose.
  std::size_t begin = 0;
  std::size_t contentBegin = 0;
  std::size_t contentEnd = 0;
  std::size_t end = 0;

  bool IsElement() const { return kind == Kind::element; }
  bool IsText() const { return kind == Kind::text || kind == Kind::blank; }
  bool IsIn(std::string_view names) const;  // separated by blanks, as in "p h1 h2"
};

// A place in the source, inside a text or between the children of an element.
struct Point {
  NodeIndex node = kNoNode;  // a text or an element
  std::size_t position = 0;
  // Between children: `position` is after the previous one and `next` before the following one.
  std::size_t next = 0;
};

class Rendering {
 public:
  Rendering() = default;
  Rendering(std::u16string source, std::vector<BoxPlace> boxes);

  const std::u16string& Source() const { return source_; }
  const std::vector<BoxPlace>& Boxes() const { return boxes_; }
  // Returns the number of the box that holds a position.
  std::optional<std::size_t> BoxAt(std::size_t position) const;
  // In the order of the tree; the first is the html element, and there is none if the page cannot
  // be mapped at all.
  const std::vector<Node>& Nodes() const { return nodes_; }
  const Node& At(NodeIndex node) const { return nodes_[node]; }
  std::u16string_view SourceOf(const Node& node) const {
    return std::u16string_view(source_).substr(node.begin, node.end - node.begin);
  }

  // --- rendered places ---
  // Nothing where the trees differ, or where the place cannot be edited.
  std::optional<Point> Find(const RenderedPlace& place) const;
  // Returns the position of the innermost element on the way to a place, however far it is known.
  std::size_t Near(const RenderedPlace& place) const;
  // Returns what to write for a part of the text that a place is in to become `added`. `place.hash`
  // is that of the text before.
  std::optional<Edit> ReplaceText(const RenderedPlace& place, std::size_t begin, std::size_t end,
                                  std::u16string_view added) const;
  // Returns the place of a position in the source: in a text where there is one, else between
  // children. The hashes are those that the browser's tree should have.
  std::optional<RenderedPlace> PlaceOf(std::size_t position) const;

  // Takes over an edit.
  void Apply(const Edit& edit);
  // Takes over an edit inside a text, in a fraction of the time of parsing. Returns false, with
  // nothing changed, when the tree may change.
  bool ApplyInText(const Edit& edit);
  // The same, for a browser's tree to follow: returns the text as its place was before, and what it
  // is now.
  struct TextWrite {
    RenderedPlace place;
    std::u16string text;
  };
  std::optional<TextWrite> WriteInText(const Edit& edit);

  // --- the tree ---
  // Returns the first child, or kNoNode.
  NodeIndex FirstChild(NodeIndex node) const;
  NodeIndex NextSibling(NodeIndex node) const;
  // Returns the innermost element around a node, or the node itself, whose name is in a list.
  NodeIndex Enclosing(NodeIndex node, std::string_view names) const;

 private:
  struct Child;
  class Builder;

  void Parse();
  std::vector<Child> ChildrenOf(NodeIndex parent) const;
  std::optional<RenderedText> TextOf(NodeIndex first, NodeIndex end) const;
  std::optional<NodeIndex> Follow(const std::vector<RenderedPlace::Level>& path) const;

  std::u16string source_;
  std::vector<BoxPlace> boxes_;
  std::vector<Node> nodes_;
};

// Names of elements between which text runs on.
bool IsInline(const Node& node);

}  // namespace kvo::design
