#include "document/design/Rendering.h"

#include <gumbo.h>

#include <algorithm>
#include <memory>

#include "common/values/Ascii.h"
#include "document/page/Utf8.h"

namespace kvo::design {
namespace {

// Browsers put what is nested deeper than this into other places.
constexpr std::size_t kDeepest = 500;

constexpr std::string_view kBox = "<img>";
constexpr std::string_view kBoxName = "img";

constexpr std::string_view kInline =
    "a abbr acronym b bdi bdo big cite code data del dfn em font i ins kbd label mark q s samp "
    "small "
    "span strike strong sub sup time tt u var";
// Elements in which parsers move texts elsewhere.
constexpr std::string_view kNoTexts = "html head frameset";
// Elements whose children are hidden, are no part of the tree, or are a form's.
constexpr std::string_view kOpaque =
    "svg math template select textarea button object iframe noscript noembed noframes audio video "
    "title script style xmp plaintext canvas";

constexpr std::string_view kEmpty =
    "area base basefont bgsound br col embed frame hr img input keygen link meta param source "
    "track "
    "wbr";

bool Holds(std::string_view names, std::string_view name) {
  for (std::size_t at = names.find(name); at != std::string_view::npos;
       at = names.find(name, at + 1)) {
    const std::size_t end = at + name.size();
    if ((at == 0 || names[at - 1] == ' ') && (end == names.size() || names[end] == ' '))
      return true;
  }
  return false;
}

// The page in UTF-8 with a small element for each box, and the way back into the source.
class Html {
 public:
  Html(std::u16string_view source, const std::vector<BoxPlace>& boxes) {
    auto box = boxes.begin();
    bytes_.reserve(source.size() + boxes.size() * kBox.size());
    for (std::size_t at = 0; at < source.size();) {
      while (bytes_.size() >= marks_.size() * kStride) marks_.push_back({bytes_.size(), at});
      if (box != boxes.end() && box->position == at) {
        boxes_.push_back({bytes_.size(), at, box->length});
        bytes_ += kBox;
        at += box->length;
        ++box;
        continue;
      }
      at += Append(source, at);
    }
    size_ = source.size();
  }

  std::string_view Bytes() const { return bytes_; }

  // The position in the source of an offset; inside a box, that of the box.
  std::size_t PositionOf(std::size_t offset) {
    if (offset >= bytes_.size()) return size_;
    auto mark = std::ranges::upper_bound(marks_, offset, {}, &Mark::offset);
    if (mark == marks_.begin()) return 0;
    --mark;
    // Places are asked for nearly in their order: goes on from the last one where that is nearer.
    const Mark& start = mark->offset < last_.offset && last_.offset <= offset ? last_ : *mark;
    std::size_t at = start.offset;
    std::size_t position = start.position;
    auto box = std::ranges::lower_bound(boxes_, at, {}, &Box::offset);
    while (at < offset) {
      if (box != boxes_.end() && box->offset == at) {
        if (offset < at + kBox.size()) return position;
        at += kBox.size();
        position += box->length;
        ++box;
        continue;
      }
      const page::Utf8Character first =
          page::FirstUtf8Character(std::string_view(bytes_).substr(at));
      at += first.length;
      position += first.character < 0x10000 ? 1 : 2;
    }
    last_ = {at, position};
    return position;
  }
  // Returns the length in the source of the box at an offset; 0 when there is none.
  std::size_t BoxAt(std::size_t offset) const {
    const auto box = std::ranges::lower_bound(boxes_, offset, {}, &Box::offset);
    return box != boxes_.end() && box->offset == offset ? box->length : 0;
  }

 private:
  struct Mark {
    std::size_t offset;
    std::size_t position;
  };
  struct Box {
    std::size_t offset;
    std::size_t position;
    std::size_t length;
  };

  // Appends the character at a position and returns its length there.
  std::size_t Append(std::u16string_view source, std::size_t at) {
    const char16_t c = source[at];
    if (c < 0x80) {
      bytes_ += static_cast<char>(c);
      return 1;
    }
    const bool high = c >= 0xD800 && c < 0xDC00;
    if (high && at + 1 < source.size() && source[at + 1] >= 0xDC00 && source[at + 1] < 0xE000) {
      page::AppendUtf8(bytes_, (static_cast<char32_t>(c - 0xD7C0) << 10) +
                                   (static_cast<char32_t>(source[at + 1]) & 0x3FF));
      return 2;
    }
    page::AppendUtf8(bytes_, c >= 0xD800 && c < 0xE000 ? page::kReplacementCharacter : c);
    return 1;
  }

  static constexpr std::size_t kStride = 256;
  std::string bytes_;
  std::vector<Mark> marks_;
  Mark last_{0, 0};
  std::vector<Box> boxes_;
  std::size_t size_ = 0;
};

// Whether the tags may nest deeper than a parser can follow. Counts start tags without end tags, of
// which some close by themselves, and so may say so of a page that is flat.
bool MayBeTooDeep(std::string_view html) {
  constexpr std::string_view kSelfClosing = "p li td th tr";
  constexpr std::size_t kMany = 20000;
  std::size_t depth = 0;
  for (std::size_t at = html.find('<'); at != std::string_view::npos; at = html.find('<', at + 1)) {
    if (at + 1 >= html.size()) break;
    if (html[at + 1] == '/') {
      if (depth > 0) --depth;
      continue;
    }
    if (!IsLetter(html[at + 1])) continue;
    std::string name;
    for (std::size_t end = at + 1; end < html.size() && IsLetter(html[end]) && name.size() < 8;
         ++end)
      name += LowerAscii(html[end]);
    if (!Holds(kEmpty, name) && !Holds(kSelfClosing, name) && ++depth > kMany) return true;
  }
  return false;
}

constexpr unsigned kMoved = GUMBO_INSERTION_FROM_ISINDEX | GUMBO_INSERTION_FROM_IMAGE |
                            GUMBO_INSERTION_CONVERTED_FROM_END_TAG |
                            GUMBO_INSERTION_RECONSTRUCTED_FORMATTING_ELEMENT |
                            GUMBO_INSERTION_ADOPTION_AGENCY_CLONED |
                            GUMBO_INSERTION_ADOPTION_AGENCY_MOVED | GUMBO_INSERTION_FOSTER_PARENTED;

}  // namespace

bool Node::IsIn(std::string_view names) const { return IsElement() && Holds(names, name); }

bool IsInline(const Node& node) { return node.IsIn(kInline); }

// Copies the parser's tree.
class Rendering::Builder {
 public:
  Builder(Html& html, std::vector<Node>& nodes) : html_(html), nodes_(nodes) {}

  void Add(const GumboNode& from, NodeIndex parent, bool locked, std::size_t depth) {
    if (depth > kDeepest) return;
    const auto index = static_cast<NodeIndex>(nodes_.size());
    Node node;
    node.parent = parent;
    node.locked = locked || (static_cast<unsigned>(from.parse_flags) & kMoved) != 0;
    if (from.type == GUMBO_NODE_ELEMENT || from.type == GUMBO_NODE_TEMPLATE) {
      nodes_.emplace_back();
      AddElement(from, node, index, depth);
      node.next = static_cast<NodeIndex>(nodes_.size());
      nodes_[index] = std::move(node);
    } else if (from.type == GUMBO_NODE_TEXT || from.type == GUMBO_NODE_WHITESPACE) {
      AddText(from.v.text, node);
    } else {
      node.kind = Node::Kind::comment;
      AddLeaf(from.v.text.original_text, node);
    }
  }

 private:
  void AddLeaf(const GumboStringPiece& piece, Node node) {
    const std::size_t begin = OffsetOf(piece);
    node.begin = node.contentBegin = html_.PositionOf(begin);
    node.end = node.contentEnd = html_.PositionOf(begin + piece.length);
    node.next = static_cast<NodeIndex>(nodes_.size() + 1);
    nodes_.push_back(std::move(node));
  }

  // The parser makes one text of what is around the end tags of body and html.
  void AddText(const GumboText& text, const Node& node) {
    std::string_view rest(text.original_text.data, text.original_text.length);
    while (!rest.empty()) {
      std::size_t end = std::min(rest.find("</"), rest.size());
      const std::size_t close = rest.find('>', end);
      const std::size_t tag = close == std::string_view::npos ? 0 : close + 1 - end;
      if (tag == 0) end = rest.size();  // an unfinished tag is text
      const std::string_view piece = rest.substr(0, end);
      Node part = node;
      part.kind =
          std::ranges::all_of(piece, [](char c) { return IsBlank(static_cast<char16_t>(c)); })
              ? Node::Kind::blank
              : Node::Kind::text;
      if (!piece.empty()) AddLeaf({piece.data(), piece.size()}, part);
      rest.remove_prefix(end + tag);
    }
  }

  void AddElement(const GumboNode& from, Node& node, NodeIndex index, std::size_t depth) {
    const GumboElement& element = from.v.element;
    node.name = NameOf(element);
    node.hasStartTag = element.original_tag.length > 0;
    node.hasEndTag = element.original_end_tag.length > 0;
    if (node.hasStartTag) {
      const std::size_t begin = OffsetOf(element.original_tag);
      node.begin = html_.PositionOf(begin);
      if (const std::size_t length = html_.BoxAt(begin)) {
        node.kind = Node::Kind::box;
        node.contentBegin = node.contentEnd = node.end = node.begin + length;
        return;
      }
      node.contentBegin = html_.PositionOf(begin + element.original_tag.length);
    }
    if (Holds(kOpaque, node.name)) node.kind = Node::Kind::opaque;
    if (Holds(kEmpty, node.name)) node.empty = true;
    std::size_t last = node.contentBegin;
    if (node.kind == Node::Kind::element) {
      for (unsigned i = 0; i < element.children.length; ++i) {
        const auto child = static_cast<NodeIndex>(nodes_.size());
        Add(*static_cast<const GumboNode*>(element.children.data[i]), index, node.locked,
            depth + 1);
        if (child == nodes_.size()) continue;
        if (!node.hasStartTag && i == 0) node.begin = node.contentBegin = nodes_[child].begin;
        if (!nodes_[child].locked) last = std::max(last, nodes_[child].end);
      }
      LockMoved(index);
    }
    if (node.hasEndTag) {
      const std::size_t end = OffsetOf(element.original_end_tag);
      node.contentEnd = html_.PositionOf(end);
      node.end = html_.PositionOf(end + element.original_end_tag.length);
    } else {
      node.contentEnd = node.end = last;
    }
  }

  // Locks children that are elsewhere in the source, such as a text in front of the table that it
  // was taken from. The parser marks only some of them.
  void LockMoved(NodeIndex parent) {
    std::vector<NodeIndex> children;
    for (auto child = static_cast<std::size_t>(parent) + 1; child < nodes_.size();
         child = nodes_[child].next)
      children.push_back(static_cast<NodeIndex>(child));
    std::size_t limit = static_cast<std::size_t>(-1);
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      if (nodes_[*child].end > limit) {
        for (NodeIndex node = *child; node < nodes_[*child].next; ++node)
          nodes_[node].locked = true;
      } else if (nodes_[*child].begin < nodes_[*child].end) {
        limit = nodes_[*child].begin;
      }
    }
  }

  std::size_t OffsetOf(const GumboStringPiece& piece) const {
    return static_cast<std::size_t>(piece.data - html_.Bytes().data());
  }
  static std::string NameOf(const GumboElement& element) {
    if (element.tag_namespace != GUMBO_NAMESPACE_HTML)
      return element.tag_namespace == GUMBO_NAMESPACE_SVG ? "svg" : "math";
    if (element.tag != GUMBO_TAG_UNKNOWN) return gumbo_normalized_tagname(element.tag);
    GumboStringPiece name = element.original_tag;
    gumbo_tag_from_original_text(&name);
    return Lowered({name.data, name.length});
  }

  Html& html_;
  std::vector<Node>& nodes_;
};

Rendering::Rendering(std::u16string source, std::vector<BoxPlace> boxes)
    : source_(std::move(source)), boxes_(std::move(boxes)) {
  Parse();
}

void Rendering::Parse() {
  nodes_.clear();
  Html html(source_, boxes_);
  if (MayBeTooDeep(html.Bytes())) return;
  GumboOptions options = kGumboDefaultOptions;
  options.max_errors = 0;
  const auto end = [&options](GumboOutput* output) { gumbo_destroy_output(&options, output); };
  const std::unique_ptr<GumboOutput, decltype(end)> output(
      gumbo_parse_with_options(&options, html.Bytes().data(), html.Bytes().size()), end);
  Builder(html, nodes_).Add(*output->root, kNoNode, false, 0);
}

// --- the tree ---

NodeIndex Rendering::FirstChild(NodeIndex node) const {
  return nodes_[node].next > node + 1 ? node + 1 : kNoNode;
}

NodeIndex Rendering::NextSibling(NodeIndex node) const {
  const Node& each = nodes_[node];
  return each.parent != kNoNode && each.next < nodes_[each.parent].next ? each.next : kNoNode;
}

NodeIndex Rendering::Enclosing(NodeIndex node, std::string_view names) const {
  while (node != kNoNode && !nodes_[node].IsIn(names)) node = nodes_[node].parent;
  return node;
}

// A child of an element as the script counts: adjoining texts are one.
struct Rendering::Child {
  NodeIndex first;
  NodeIndex end;  // after its last sibling
  bool blank;     // does not count
};

std::vector<Rendering::Child> Rendering::ChildrenOf(NodeIndex parent) const {
  std::vector<Child> children;
  bool afterText = false;
  for (NodeIndex child = FirstChild(parent); child != kNoNode; child = NextSibling(child)) {
    const Node& node = nodes_[child];
    if (node.IsText() && afterText) {
      children.back().end = node.next;
      children.back().blank = children.back().blank && node.kind == Node::Kind::blank;
    } else {
      children.push_back({child, node.next, node.kind == Node::Kind::blank});
    }
    afterText = node.IsText();
  }
  return children;
}

namespace {

std::uint32_t HashNames(const std::vector<Node>& nodes, const auto& children) {
  std::uint32_t hash = kHashStart;
  for (const auto& child : children) {
    if (child.blank) continue;
    const Node& node = nodes[child.first];
    const std::string_view name = node.IsText()                      ? "#text"
                                  : node.kind == Node::Kind::comment ? "#comment"
                                  : node.kind == Node::Kind::box     ? kBoxName
                                                                     : std::string_view(node.name);
    hash = Hash(std::string_view("\n"), Hash(name, hash));
  }
  return hash;
}

}  // namespace

std::optional<RenderedText> Rendering::TextOf(NodeIndex first, NodeIndex end) const {
  RenderedText whole;
  for (NodeIndex node = first; node < end; node = nodes_[node].next) {
    const Node& each = nodes_[node];
    auto read = ReadText(SourceOf(each), each.begin);
    if (!read) return std::nullopt;
    if (!whole.places.empty()) whole.places.pop_back();
    whole.text += read->text;
    whole.places.insert(whole.places.end(), read->places.begin(), read->places.end());
  }
  return whole;
}

// --- rendered places ---

// Returns the parent of the last level.
std::optional<std::size_t> Rendering::BoxAt(std::size_t position) const {
  const auto behind = std::ranges::upper_bound(boxes_, position, {}, &BoxPlace::position);
  if (behind == boxes_.begin()) return std::nullopt;
  const auto box = std::prev(behind);
  if (position >= box->position + box->length) return std::nullopt;
  return static_cast<std::size_t>(box - boxes_.begin());
}

std::optional<NodeIndex> Rendering::Follow(const std::vector<RenderedPlace::Level>& path) const {
  if (nodes_.empty() || path.empty()) return std::nullopt;
  NodeIndex node = 0;
  for (std::size_t level = 0; level < path.size(); ++level) {
    if (!nodes_[node].IsElement() || nodes_[node].empty) return std::nullopt;
    const std::vector<Child> children = ChildrenOf(node);
    if (HashNames(nodes_, children) != path[level].names) return std::nullopt;
    if (level + 1 == path.size()) return node;
    std::uint32_t number = 0;
    const auto child = std::ranges::find_if(
        children, [&](const Child& each) { return !each.blank && number++ == path[level].child; });
    if (child == children.end()) return std::nullopt;
    node = child->first;
  }
  return std::nullopt;
}

std::optional<Point> Rendering::Find(const RenderedPlace& place) const {
  const auto parent = Follow(place.path);
  if (!parent || nodes_[*parent].locked || nodes_[*parent].IsIn(kTableParts) ||
      nodes_[*parent].IsIn(kNoTexts))
    return std::nullopt;
  const std::vector<Child> children = ChildrenOf(*parent);
  const std::uint32_t wanted = place.path.back().child;
  std::uint32_t number = 0;
  std::size_t position = nodes_[*parent].contentBegin;
  std::size_t next = nodes_[*parent].contentEnd;
  for (const Child& child : children) {
    const Node& node = nodes_[child.first];
    const bool here = number == wanted && child.blank == (place.kind != RenderedPlace::Kind::text);
    if (here && node.IsText() && place.kind != RenderedPlace::Kind::gap) {
      const auto text = TextOf(child.first, child.end);
      if (!text || node.locked || Hash(text->text) != place.hash ||
          place.offset > text->text.size())
        return std::nullopt;
      // What follows the end tags of body and html is part of the last text, but not edited with
      // it.
      const auto first = ReadText(SourceOf(node), node.begin);
      if (place.offset > first->text.size()) return std::nullopt;
      return Point{child.first, first->places[place.offset], first->places[place.offset]};
    }
    if (number == wanted && !child.blank) {
      next = node.begin;
      break;
    }
    if (!child.blank) {
      position = nodes_[child.end - 1].end;
      // The end of a child that has children is that of the child itself.
      position = std::max(position, node.end);
      ++number;
    }
  }
  if (number != wanted || place.kind != RenderedPlace::Kind::gap) return std::nullopt;
  return Point{*parent, position, next};
}

std::size_t Rendering::Near(const RenderedPlace& place) const {
  RenderedPlace part = place;
  for (; !part.path.empty(); part.path.pop_back())
    if (const auto node = Follow(part.path)) return nodes_[*node].contentBegin;
  return 0;
}

std::optional<Edit> Rendering::ReplaceText(const RenderedPlace& place, std::size_t begin,
                                           std::size_t end, std::u16string_view added) const {
  const auto point = Find(place);
  if (!point || !nodes_[point->node].IsText()) return std::nullopt;
  // Texts in several pieces have markup between them.
  const Node& node = nodes_[point->node];
  const auto first = ReadText(SourceOf(node), node.begin);
  if (!first || end > first->text.size()) return std::nullopt;
  const auto change = ChangeText(SourceOf(node), node.begin, begin, end, added);
  if (!change) return std::nullopt;
  return Edit{change->begin, change->end, change->written};
}

std::optional<RenderedPlace> Rendering::PlaceOf(std::size_t position) const {
  if (nodes_.empty()) return std::nullopt;
  RenderedPlace place;
  for (NodeIndex parent = 0;;) {
    const std::vector<Child> children = ChildrenOf(parent);
    const std::uint32_t names = HashNames(nodes_, children);
    std::uint32_t number = 0;
    const Child* into = nullptr;
    std::uint32_t intoNumber = 0;
    std::uint32_t gap = 0;
    for (const Child& child : children) {
      const Node& first = nodes_[child.first];
      const std::size_t end = first.IsText() ? nodes_[child.end - 1].end : first.end;
      const bool inside = first.IsText() ? first.begin <= position && position <= end
                                         : first.IsElement() && !first.empty &&
                                               first.contentBegin <= position &&
                                               position <= first.contentEnd &&
                                               (first.hasStartTag || first.begin < first.end);
      // A text at the place goes before an element that ends there.
      if (inside && (into == nullptr || (first.IsText() && !first.locked))) {
        if (into == nullptr || !nodes_[into->first].IsText()) {
          into = &child;
          intoNumber = number;
        }
      }
      if (!child.blank) {
        ++number;
        if (end <= position) gap = number;
      }
    }
    if (into == nullptr) {
      place.path.push_back({gap, names});
      place.kind = RenderedPlace::Kind::gap;
      return place;
    }
    const Node& first = nodes_[into->first];
    place.path.push_back({intoNumber, names});
    if (!first.IsText()) {
      parent = into->first;
      continue;
    }
    const auto text = TextOf(into->first, into->end);
    if (!text) return std::nullopt;
    place.kind = into->blank ? RenderedPlace::Kind::blank : RenderedPlace::Kind::text;
    place.offset = std::min(text->UnitAt(position), text->text.size());
    place.hash = Hash(text->text);
    return place;
  }
}

// --- edits ---

void Rendering::Apply(const Edit& edit) {
  if (ApplyInText(edit)) return;
  source_.replace(edit.begin, edit.end - edit.begin, edit.text);
  std::erase_if(boxes_, [&](const BoxPlace& box) {
    return box.position < edit.end && box.position + box.length > edit.begin;
  });
  for (BoxPlace& box : boxes_)
    if (box.position >= edit.end) box.position += edit.text.size() - (edit.end - edit.begin);
  for (std::size_t at = edit.text.find(u'\uFFFC'); at != std::u16string::npos;
       at = edit.text.find(u'\uFFFC', at + 1))
    boxes_.push_back({edit.begin + at, 1});
  std::ranges::sort(boxes_, {}, &BoxPlace::position);
  Parse();
}

std::optional<Rendering::TextWrite> Rendering::WriteInText(const Edit& edit) {
  auto place = PlaceOf(edit.begin);
  if (!place || place->kind != RenderedPlace::Kind::text) return std::nullopt;
  const auto point = Find(*place);
  if (!point || !nodes_[point->node].IsText() || edit.end > nodes_[point->node].end ||
      !ApplyInText(edit))
    return std::nullopt;
  NodeIndex last = point->node;
  for (NodeIndex next = NextSibling(last); next != kNoNode && nodes_[next].IsText();
       next = NextSibling(next))
    last = next;
  auto text = TextOf(point->node, last + 1);
  return TextWrite{std::move(*place), std::move(text->text)};
}

bool Rendering::ApplyInText(const Edit& edit) {
  NodeIndex found = kNoNode;
  for (NodeIndex node = 0; node < nodes_.size(); ++node) {
    const Node& each = nodes_[node];
    if (each.kind == Node::Kind::text && !each.locked && each.begin <= edit.begin &&
        edit.end <= each.end)
      found = node;
  }
  if (found == kNoNode) return false;
  // A text after the page's end tags belongs to the body without being inside of it.
  for (NodeIndex node = nodes_[found].parent; node != kNoNode; node = nodes_[node].parent)
    if (nodes_[found].end > nodes_[node].contentEnd) return false;
  std::u16string text(SourceOf(nodes_[found]));
  text.replace(edit.begin - nodes_[found].begin, edit.end - edit.begin, edit.text);
  const auto read = ReadText(text, 0);
  // Parsers drop blanks where a text begins the page.
  if (read && edit.begin == nodes_[found].begin && !read->text.empty() && IsBlank(read->text[0]))
    return false;
  if (!read || read->IsBlank() || edit.text.find(u'\uFFFC') != std::u16string::npos) return false;
  const std::size_t end = nodes_[found].end;
  const std::size_t added = edit.text.size() - (edit.end - edit.begin);
  source_.replace(edit.begin, edit.end - edit.begin, edit.text);
  for (NodeIndex node = 0; node < nodes_.size(); ++node) {
    Node& each = nodes_[node];
    const bool holds = node <= found && found < each.next;
    if (!holds && each.begin >= end && node > found) {
      each.begin += added;
      each.contentBegin += added;
    }
    // What holds the text may end before it: a text after the page's end belongs to its body.
    if (holds ? each.contentEnd >= edit.end
              : (each.end >= end && node > found) || each.begin > end) {
      each.contentEnd += added;
      each.end += added;
    }
  }
  for (BoxPlace& box : boxes_)
    if (box.position >= end) box.position += added;
  return true;
}

}  // namespace kvo::design
