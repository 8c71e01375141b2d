#include "document/design/Parts.h"

#include "common/values/Ascii.h"

namespace kvo::design {
namespace {

// Elements without children that show something.
constexpr std::string_view kThings = "img hr input br";

// The name of an element as its start tag writes it.
std::u16string WrittenName(const Rendering& page, const Node& node) {
  return page.Source().substr(node.begin + 1, node.name.size());
}

class Eraser {
 public:
  Eraser(const Rendering& page, std::size_t begin, std::size_t end, Edits& edits)
      : page_(page), begin_(begin), end_(end), edits_(edits) {}

  void Erase(NodeIndex parent) {
    for (NodeIndex child = page_.FirstChild(parent); child != kNoNode;
         child = page_.NextSibling(child)) {
      const Node& node = page_.At(child);
      const std::size_t begin = std::max(begin_, node.begin);
      const std::size_t end = std::min(end_, node.end);
      if (begin >= end) {
        if (node.IsElement()) Erase(child);  // elements without tags have no places of their own
        continue;
      }
      if (node.IsText()) {
        if (node.kind == Node::Kind::text || !page_.At(parent).IsIn(kTableParts))
          edits_.Remove(begin, end);
      } else if (node.kind == Node::Kind::comment) {
        continue;  // conditional comments hold what other mail programs show
      } else if (begin == node.begin && end == node.end && !node.IsIn(kCells) &&
                 (!node.IsElement() || node.hasStartTag)) {
        edits_.Remove(begin, end);
      } else {
        Erase(child);
      }
    }
  }

 private:
  const Rendering& page_;
  std::size_t begin_;
  std::size_t end_;
  Edits& edits_;
};

}  // namespace

std::u16string FromAscii(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

bool SourcePart::TouchesLocked() const {
  return std::ranges::any_of(page_.Nodes(),
                             [&](const Node& node) { return node.locked && Overlaps(node); });
}

bool SourcePart::IsThing(const Node& node) {
  return node.kind == Node::Kind::box || node.kind == Node::Kind::opaque || node.IsIn(kThings);
}

bool SourcePart::HasContent() const {
  bool has = false;
  EachLeaf([&](NodeIndex node, std::size_t from, std::size_t to) {
    const Node& each = page_.At(node);
    if (each.kind == Node::Kind::text) {
      const auto part = std::u16string_view(page_.Source()).substr(from, to - from);
      has = has || !std::ranges::all_of(part, IsBlank);
    } else {
      has = true;
    }
  });
  return has;
}

NodeIndex BlockAround(const Rendering& page, NodeIndex node) {
  while (node != kNoNode && (!page.At(node).IsElement() || IsInline(page.At(node))))
    node = page.At(node).parent;
  return node;
}

std::u16string EndTag(const Rendering& page, const Node& node) {
  return u"</" + WrittenName(page, node) + u">";
}
std::u16string StartTag(const Rendering& page, const Node& node) {
  return page.Source().substr(node.begin, node.contentBegin - node.begin);
}

std::optional<AttributePlace> FindAttribute(std::u16string_view tag, std::string_view name) {
  std::size_t at = 1;
  const auto skip = [&](const auto& holds) {
    while (at < tag.size() && holds(tag[at])) ++at;
  };
  skip([](char16_t c) { return !IsBlank(c) && c != u'>' && c != u'/'; });
  while (at < tag.size()) {
    const std::size_t begin = at;
    skip([](char16_t c) { return IsBlank(c) || c == u'/'; });
    if (at >= tag.size() || tag[at] == u'>') return std::nullopt;
    const std::size_t nameBegin = at;
    ++at;
    skip([](char16_t c) { return !IsBlank(c) && c != u'=' && c != u'>' && c != u'/'; });
    std::string found;
    for (const char16_t c : tag.substr(nameBegin, at - nameBegin))
      found += c < 0x80 ? LowerAscii(static_cast<char>(c)) : '?';
    AttributePlace place{begin, at, at, at};
    const std::size_t nameEnd = at;
    skip(IsBlank);
    if (at < tag.size() && tag[at] == u'=') {
      ++at;
      skip(IsBlank);
      const char16_t quote = at < tag.size() ? tag[at] : u'>';
      if (quote == u'"' || quote == u'\'') {
        place.valueBegin = ++at;
        skip([quote](char16_t c) { return c != quote; });
        place.valueEnd = at;
        at = std::min(at + 1, tag.size());
      } else {
        place.valueBegin = at;
        skip([](char16_t c) { return !IsBlank(c) && c != u'>'; });
        place.valueEnd = at;
      }
      place.end = at;
    } else {
      at = nameEnd;
    }
    if (found == name) return place;
  }
  return std::nullopt;
}

std::u16string StartTagAgain(const Rendering& page, const Node& node) {
  std::u16string tag = StartTag(page, node);
  if (const auto id = FindAttribute(tag, "id")) tag.erase(id->begin, id->end - id->begin);
  return tag;
}

std::vector<NodeIndex> ElementsBelow(const Rendering& page, NodeIndex node, NodeIndex top) {
  std::vector<NodeIndex> elements;
  for (; node != kNoNode && node != top; node = page.At(node).parent)
    if (page.At(node).IsElement()) elements.push_back(node);
  return elements;
}

void Erase(const Rendering& page, std::size_t begin, std::size_t end, Edits& edits) {
  Eraser(page, begin, end, edits).Erase(0);
}

std::optional<NodeIndex> Placeholder(const Rendering& page, const Point& point) {
  const NodeIndex block = BlockAround(page, point.node);
  if (block == kNoNode) return std::nullopt;
  const Node& around = page.At(block);
  std::optional<NodeIndex> found;
  NodeIndex before = kNoNode;
  for (NodeIndex node = block + 1; node < around.next; ++node) {
    const Node& each = page.At(node);
    if (each.begin >= point.position && each.IsIn("br") && !found) {
      found = node;
      continue;
    }
    if (each.kind == Node::Kind::blank || each.kind == Node::Kind::comment) continue;
    if (each.begin >= point.position && (found || each.kind == Node::Kind::text))
      return std::nullopt;
    if (each.end <= point.position) before = node;
    if (each.begin >= point.position && !each.IsElement()) return std::nullopt;
  }
  if (!found || page.At(*found).parent == kNoNode) return std::nullopt;
  if (before != kNoNode && !page.At(before).IsIn("br")) return std::nullopt;
  return found;
}

}  // namespace kvo::design
