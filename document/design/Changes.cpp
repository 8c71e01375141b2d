#include "document/design/Changes.h"

#include <algorithm>
#include <utility>

#include "common/values/Ascii.h"

namespace kvo::design {
namespace {

constexpr std::string_view kParagraphs =
    "p h1 h2 h3 h4 h5 h6 li dt dd div blockquote address center pre";
constexpr std::string_view kHeadings = "h1 h2 h3 h4 h5 h6";
constexpr std::string_view kRenamed = "p h1 h2 h3 h4 h5 h6";
constexpr std::string_view kLists = "ul ol";
// Parts of tables: they are emptied, never removed without their table.
constexpr std::string_view kCells = "td th tr tbody thead tfoot caption colgroup col";
// Elements without children that show something.
constexpr std::string_view kThings = "img hr input br";

std::u16string Wide(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

// Collects edits of one state of the source.
class Edits {
 public:
  void Replace(std::size_t begin, std::size_t end, std::u16string text) {
    if (begin == end && text.empty()) return;
    edits_.push_back({begin, end, std::move(text)});
  }
  void Remove(std::size_t begin, std::size_t end) { Replace(begin, end, {}); }
  void Insert(std::size_t at, std::u16string text) { Replace(at, at, std::move(text)); }

  // `begin` and `end` are places in the old source. A selection stays inside of what was inserted
  // around it; a caret goes behind it, but not behind end tags.
  std::optional<Change> Finish(std::size_t begin, std::size_t end) {
    std::ranges::stable_sort(edits_, {}, &Edit::begin);
    std::vector<Edit> joined;
    for (Edit& edit : edits_) {
      if (!joined.empty() && edit.begin < joined.back().end) {
        // Of two removals, one holds the other.
        joined.back().end = std::max(joined.back().end, edit.end);
        joined.back().text += edit.text;
      } else {
        joined.push_back(std::move(edit));
      }
    }
    if (joined.empty()) return std::nullopt;
    const bool closes =
        begin == end && std::ranges::any_of(joined, [&](const Edit& edit) {
          return edit.begin == begin && edit.end == begin && edit.text.starts_with(u"</");
        });
    Change change{std::move(joined), 0, 0};
    change.begin = After(change.edits, begin, !closes);
    change.end =
        begin == end ? change.begin : std::max(change.begin, After(change.edits, end, false));
    return change;
  }

 private:
  // The new position of an old one; `behind` what was inserted there.
  static std::size_t After(const std::vector<Edit>& edits, std::size_t position, bool behind) {
    std::size_t moved = position;
    for (const Edit& edit : edits) {
      if (edit.begin > position || (edit.begin == position && edit.end == position && !behind))
        break;
      if (edit.end <= position) {
        moved += edit.text.size() - (edit.end - edit.begin);
      } else {
        moved -= position - edit.begin;
        if (behind) moved += edit.text.size();
        break;
      }
    }
    return moved;
  }

  std::vector<Edit> edits_;
};

// Questions about a page and a part of its source.
class Reader {
 public:
  Reader(const Rendering& page, std::size_t begin, std::size_t end)
      : page_(page), begin_(begin), end_(end) {}

  const Node& At(NodeIndex node) const { return page_.At(node); }

  bool Overlaps(const Node& node) const { return node.begin < end_ && begin_ < node.end; }
  bool Holds(const Node& node) const { return begin_ <= node.begin && node.end <= end_; }

  // Whether something moved by the parser is in the part.
  bool TouchesLocked() const {
    return std::ranges::any_of(page_.Nodes(),
                               [&](const Node& node) { return node.locked && Overlaps(node); });
  }
  static bool IsThing(const Node& node) {
    return node.kind == Node::Kind::box || node.kind == Node::Kind::opaque || node.IsIn(kThings);
  }
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
  bool HasLeaves() const {
    bool has = false;
    EachLeaf([&](NodeIndex, std::size_t begin, std::size_t end) { has = has || begin < end; });
    return has;
  }

 private:
  const Rendering& page_;
  std::size_t begin_;
  std::size_t end_;
};

bool HasContent(const Rendering& page, std::size_t begin, std::size_t end) {
  bool has = false;
  Reader(page, begin, end).EachLeaf([&](NodeIndex node, std::size_t from, std::size_t to) {
    const Node& each = page.At(node);
    if (each.kind == Node::Kind::text) {
      const auto part = std::u16string_view(page.Source()).substr(from, to - from);
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

// The name of an element as its start tag writes it.
std::u16string WrittenName(const Rendering& page, const Node& node) {
  return page.Source().substr(node.begin + 1, node.name.size());
}
std::u16string EndTag(const Rendering& page, const Node& node) {
  return u"</" + WrittenName(page, node) + u">";
}
std::u16string StartTag(const Rendering& page, const Node& node) {
  return page.Source().substr(node.begin, node.contentBegin - node.begin);
}

// The place of an attribute in a tag, from the blank before its name to its end; the value without
// its quotes.
struct AttributePlace {
  std::size_t begin;
  std::size_t end;
  std::size_t valueBegin;
  std::size_t valueEnd;
};
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

// A start tag for a second element like the first: an id is never given twice.
std::u16string StartTagAgain(const Rendering& page, const Node& node) {
  std::u16string tag = StartTag(page, node);
  if (const auto id = FindAttribute(tag, "id")) tag.erase(id->begin, id->end - id->begin);
  return tag;
}

// The elements around a node up to `top`, which is left out; the innermost first.
std::vector<NodeIndex> ElementsBelow(const Rendering& page, NodeIndex node, NodeIndex top) {
  std::vector<NodeIndex> elements;
  for (; node != kNoNode && node != top; node = page.At(node).parent)
    if (page.At(node).IsElement()) elements.push_back(node);
  return elements;
}

// Removes what a selection holds but the tags that enclose other things, too.
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

// Appends the second paragraph of a selection to the first. Returns false when they stay apart.
bool Join(const Rendering& page, NodeIndex first, NodeIndex second, Edits& edits) {
  if (first == second || first == kNoNode || second == kNoNode) return false;
  const Node& a = page.At(first);
  const Node& b = page.At(second);
  if (!a.IsIn(kParagraphs) || !b.IsIn(kParagraphs) || a.parent != b.parent || second < first ||
      !a.hasStartTag || !b.hasStartTag)
    return false;
  edits.Remove(a.contentEnd, b.contentBegin);
  if (b.hasEndTag && a.name != b.name)
    edits.Replace(b.contentEnd, b.end, EndTag(page, a));
  else if (!b.hasEndTag && a.hasEndTag)
    edits.Insert(b.contentEnd, EndTag(page, a));
  return true;
}

// Whether a `br` only holds an empty line open: it is last in its block, and nothing is between it
// and the line's start.
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

// A text as written after what stands before it.
std::u16string WrittenAfter(const Rendering& page, const Point& point, std::u16string_view text) {
  const Node& node = page.At(point.node);
  if (node.IsText() && node.begin < point.position) {
    const auto before =
        std::u16string_view(page.Source()).substr(node.begin, point.position - node.begin);
    const auto read = ReadText(before, 0);
    const auto change =
        read ? ChangeText(before, 0, read->text.size(), read->text.size(), text) : std::nullopt;
    if (change && change->begin == before.size()) return change->written;
  }
  return WriteText(text);
}

}  // namespace

// --- text ---

std::optional<Change> Author::Type(const Selection& selection, std::u16string_view text) const {
  return Insert(selection, WrittenAfter(page_, selection.from, text));
}

std::optional<Change> Author::Insert(const Selection& selection, std::u16string_view markup) const {
  Edits edits;
  const std::size_t begin = selection.IsCaret() ? selection.from.position : selection.Begin();
  const std::size_t end = selection.IsCaret() ? begin : selection.End();
  const Reader part(page_, begin, end);
  if (part.TouchesLocked()) return std::nullopt;
  if (markup.empty() || !selection.IsCaret()) {
    if (begin < end) Eraser(page_, begin, end, edits).Erase(0);
    Join(page_, BlockAround(page_, selection.from.node), BlockAround(page_, selection.to.node),
         edits);
  } else if (const auto placeholder = Placeholder(page_, selection.from)) {
    edits.Remove(page_.At(*placeholder).begin, page_.At(*placeholder).end);
  }
  if (markup.empty()) return edits.Finish(begin, begin);
  edits.Insert(begin, std::u16string(markup));
  return edits.Finish(begin, begin);
}

std::optional<Change> Author::TypeLines(const Selection& selection,
                                        std::u16string_view text) const {
  std::u16string markup;
  bool first = true;
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t end = std::min(text.find(u'\n', at), text.size());
    std::u16string_view line = text.substr(at, end - at);
    if (line.ends_with(u'\r')) line.remove_suffix(1);
    if (!first) markup += u"<br>";
    markup += first ? WrittenAfter(page_, selection.from, line) : WriteText(line);
    first = false;
    at = end + 1;
  }
  return markup.empty() ? std::nullopt : Insert(selection, markup);
}

// --- paragraphs ---

std::optional<Change> Author::Enter(const Selection& selection) const {
  const NodeIndex block = BlockAround(page_, selection.from.node);
  if (block == kNoNode || !page_.At(block).IsIn("p h1 h2 h3 h4 h5 h6 li") ||
      !page_.At(block).hasStartTag || block != BlockAround(page_, selection.to.node))
    return BreakLine(selection);
  const Node& around = page_.At(block);
  Edits edits;
  Point point = selection.from;
  const std::size_t begin = selection.IsCaret() ? point.position : selection.Begin();
  const std::size_t end = selection.IsCaret() ? begin : selection.End();
  if (Reader(page_, begin, end).TouchesLocked()) return std::nullopt;
  if (begin < end) Eraser(page_, begin, end, edits).Erase(0);

  // At the edge of a format the next paragraph begins without it.
  std::size_t at = begin;
  NodeIndex inner = page_.At(point.node).IsText() ? page_.At(point.node).parent : point.node;
  while (begin == end && inner != block) {
    const Node& each = page_.At(inner);
    if (at == each.contentEnd && each.hasEndTag)
      at = each.end;
    else if (at == each.contentBegin && each.hasStartTag)
      at = each.begin;
    else
      break;
    inner = each.parent;
  }
  const bool leftEmpty = !HasContent(page_, around.contentBegin, begin);
  const bool rightEmpty = !HasContent(page_, end, around.contentEnd);
  std::u16string closed;
  std::u16string opened;
  for (const NodeIndex element : ElementsBelow(page_, inner, block)) {
    closed += EndTag(page_, page_.At(element));
    opened = StartTagAgain(page_, page_.At(element)) + opened;
  }
  const bool endsHeading = around.IsIn(kHeadings) && rightEmpty && !leftEmpty;
  std::u16string before = closed;
  if (leftEmpty) before = u"<br>" + before;
  if (around.hasEndTag) before += EndTag(page_, around);
  std::u16string start = endsHeading ? u"<p>" : StartTagAgain(page_, around);
  std::u16string after = opened;
  if (rightEmpty) after += u"<br>";
  edits.Insert(at, before + start + after);
  if (endsHeading && around.hasEndTag) edits.Replace(around.contentEnd, around.end, u"</p>");
  auto change = edits.Finish(at, at);
  // In the new paragraph, before a line break that holds it open.
  if (change) change->begin = change->end = at + (before + start + opened).size();
  return change;
}

std::optional<Change> Author::BreakLine(const Selection& selection) const {
  const NodeIndex block = BlockAround(page_, selection.to.node);
  const std::size_t end = selection.IsCaret() ? selection.from.position : selection.End();
  const bool last = block == kNoNode || !HasContent(page_, end, page_.At(block).contentEnd);
  if (last && selection.IsCaret() && Placeholder(page_, selection.from))
    return Insert(selection, u"<br><br>");
  auto change = Insert(selection, last ? u"<br><br>" : u"<br>");
  if (change && last) change->begin = change->end -= 4;
  return change;
}

namespace {

// The innermost blocks that hold leaves of the selection, in order.
std::vector<NodeIndex> BlocksOf(const Rendering& page, const Selection& selection) {
  std::vector<NodeIndex> blocks;
  const auto add = [&](NodeIndex node) {
    const NodeIndex block = BlockAround(page, node);
    if (block != kNoNode && (blocks.empty() || blocks.back() != block)) blocks.push_back(block);
  };
  add(selection.from.node);
  if (!selection.IsCaret())
    Reader(page, selection.Begin(), selection.End())
        .EachLeaf([&](NodeIndex node, std::size_t begin, std::size_t end) {
          if (begin < end) add(node);
        });
  return blocks;
}

void Rename(const Node& node, std::string_view name, Edits& edits) {
  edits.Replace(node.begin + 1, node.begin + 1 + node.name.size(), Wide(name));
  if (node.hasEndTag)
    edits.Replace(node.contentEnd + 2, node.contentEnd + 2 + node.name.size(), Wide(name));
  else if (name != "p" && name != "li")  // which close by themselves
    edits.Insert(node.contentEnd, u"</" + Wide(name) + u">");
}

// The run of text and inline elements around a place that stands in a cell or the like without a
// paragraph.
std::pair<std::size_t, std::size_t> RunAround(const Rendering& page, NodeIndex block,
                                              std::size_t position) {
  std::size_t begin = 0;
  std::size_t end = 0;
  for (NodeIndex child = page.FirstChild(block); child != kNoNode;
       child = page.NextSibling(child)) {
    const Node& node = page.At(child);
    const bool runs =
        node.IsText() || IsInline(node) || node.kind == Node::Kind::box || node.IsIn("img");
    if (!runs || node.locked) {
      if (node.begin >= position && begin < end) break;
      if (node.end <= position) begin = end = 0;
      continue;
    }
    if (node.kind == Node::Kind::blank) continue;
    if (begin == end) begin = node.begin;
    end = node.end;
  }
  const std::u16string& source = page.Source();
  while (begin < end && IsBlank(source[begin])) ++begin;
  while (begin < end && IsBlank(source[end - 1])) --end;
  return {begin, end};
}

}  // namespace

std::optional<Change> Author::MakeBlocks(const Selection& selection, std::string_view name) const {
  Edits edits;
  for (const NodeIndex block : BlocksOf(page_, selection)) {
    const Node& node = page_.At(block);
    if (node.locked) return std::nullopt;
    if (node.IsIn(kRenamed)) {
      if (node.name != name && node.hasStartTag) Rename(node, name, edits);
      continue;
    }
    const auto [begin, end] = RunAround(page_, block, selection.from.position);
    if (begin == end) continue;
    edits.Insert(begin, u"<" + Wide(name) + u">");
    edits.Insert(end, u"</" + Wide(name) + u">");
  }
  return edits.Finish(selection.Begin(), selection.End());
}

std::optional<Change> Author::ToggleList(const Selection& selection, std::string_view name) const {
  Edits edits;
  const std::vector<NodeIndex> blocks = BlocksOf(page_, selection);
  if (blocks.empty() ||
      std::ranges::any_of(blocks, [&](NodeIndex b) { return page_.At(b).locked; }))
    return std::nullopt;
  const auto isItem = [&](NodeIndex b) { return page_.At(b).IsIn("li"); };
  if (std::ranges::all_of(blocks, isItem)) {
    const NodeIndex list = page_.At(blocks.front()).parent;
    if (list == kNoNode || !page_.At(list).IsIn(kLists) || !page_.At(list).hasStartTag)
      return std::nullopt;
    const Node& around = page_.At(list);
    std::vector<NodeIndex> items;
    for (NodeIndex child = page_.FirstChild(list); child != kNoNode;
         child = page_.NextSibling(child))
      if (page_.At(child).IsIn("li")) items.push_back(child);
    if (around.name != name) {
      Rename(around, name, edits);
      return edits.Finish(selection.Begin(), selection.End());
    }
    const bool first = blocks.front() == items.front();
    const bool last = blocks.back() == items.back();
    for (const NodeIndex block : blocks) Rename(page_.At(block), "p", edits);
    if (first)
      edits.Remove(around.begin, around.contentBegin);
    else
      edits.Insert(page_.At(blocks.front()).begin, EndTag(page_, around));
    if (!last) {
      // After the last item; one without end tag ends here.
      const Node& item = page_.At(blocks.back());
      edits.Insert(item.end, StartTagAgain(page_, around));
    } else if (around.hasEndTag) {
      edits.Remove(around.contentEnd, around.end);
    }
    return edits.Finish(selection.Begin(), selection.End());
  }
  const std::u16string open = u"<" + Wide(name) + u">";
  const std::u16string close = u"</" + Wide(name) + u">";
  const NodeIndex parent = page_.At(blocks.front()).parent;
  const bool paragraphs = std::ranges::all_of(blocks, [&](NodeIndex b) {
    return page_.At(b).IsIn(kRenamed) && page_.At(b).hasStartTag && page_.At(b).parent == parent;
  });
  if (paragraphs) {
    edits.Insert(page_.At(blocks.front()).begin, open);
    for (const NodeIndex block : blocks) Rename(page_.At(block), "li", edits);
    edits.Insert(page_.At(blocks.back()).end, close);
  } else if (blocks.size() == 1) {
    const auto [begin, end] = RunAround(page_, blocks.front(), selection.from.position);
    if (begin == end) return std::nullopt;
    edits.Insert(begin, open + u"<li>");
    edits.Insert(end, u"</li>" + close);
  }
  return edits.Finish(selection.Begin(), selection.End());
}

// --- formats ---

namespace {

NodeIndex FormatAround(const Rendering& page, NodeIndex node, std::string_view names) {
  for (; node != kNoNode; node = page.At(node).parent) {
    const Node& each = page.At(node);
    if (each.IsIn(names)) return node;
    if (each.IsElement() && !IsInline(each)) return kNoNode;
  }
  return kNoNode;
}

// Encloses the selected texts and things in tags, as few as possible.
class Wrapper {
 public:
  Wrapper(const Rendering& page, std::size_t begin, std::size_t end, std::string_view names,
          std::u16string open, std::u16string close, Edits& edits)
      : page_(page),
        begin_(begin),
        end_(end),
        names_(names),
        open_(std::move(open)),
        close_(std::move(close)),
        edits_(edits) {}

  void Wrap(NodeIndex parent) {
    std::size_t runBegin = 0;
    std::size_t runEnd = 0;
    const auto finish = [&] {
      if (runBegin < runEnd) {
        edits_.Insert(runBegin, open_);
        edits_.Insert(runEnd, close_);
      }
      runBegin = runEnd = 0;
    };
    for (NodeIndex child = page_.FirstChild(parent); child != kNoNode;
         child = page_.NextSibling(child)) {
      const Node& node = page_.At(child);
      if (node.kind == Node::Kind::comment) continue;
      const bool text = node.IsText();
      const std::size_t begin = text ? std::max(begin_, node.begin) : node.begin;
      const std::size_t end = text ? std::min(end_, node.end) : node.end;
      if (node.kind == Node::Kind::blank || node.IsIn("br")) continue;
      if (text ? begin < end : Covers(child)) {
        RemoveInner(child);
        if (runBegin == runEnd) runBegin = begin;
        runEnd = end;
        if (text && end < node.end) finish();
        continue;
      }
      finish();
      if (node.IsElement() && !node.IsIn(names_)) Wrap(child);
    }
    finish();
  }

 private:
  // Whether everything in an inline element or a thing is selected.
  bool Covers(NodeIndex index) const {
    const Node& node = page_.At(index);
    if (node.kind == Node::Kind::box || node.IsIn("img"))
      return begin_ <= node.begin && node.end <= end_;
    if (!IsInline(node)) return false;
    bool any = false;
    for (NodeIndex inner = index + 1; inner < node.next; ++inner) {
      const Node& each = page_.At(inner);
      if (each.IsElement() && !IsInline(each) && !Reader::IsThing(each)) return false;
      if (each.kind != Node::Kind::text && !Reader::IsThing(each)) continue;
      if (each.begin < begin_ || each.end > end_) return false;
      any = true;
    }
    return any;
  }
  // The same format inside is not needed any more.
  void RemoveInner(NodeIndex index) {
    for (NodeIndex inner = index; inner < page_.At(index).next; ++inner) {
      const Node& each = page_.At(inner);
      if (!each.IsIn(names_)) continue;
      edits_.Remove(each.begin, each.contentBegin);
      if (each.hasEndTag) edits_.Remove(each.contentEnd, each.end);
    }
  }

  const Rendering& page_;
  std::size_t begin_;
  std::size_t end_;
  std::string_view names_;
  std::u16string open_;
  std::u16string close_;
  Edits& edits_;
};

// Takes an element away from the selected part of what it encloses.
bool Unwrap(const Rendering& page, NodeIndex element, const Selection& selection, Edits& edits) {
  const Node& node = page.At(element);
  if (!node.hasStartTag || !node.hasEndTag || node.locked) return false;
  const std::size_t begin = std::max(selection.Begin(), node.contentBegin);
  const std::size_t end = std::min(selection.End(), node.contentEnd);
  // Tags between a cut and the element have to be closed and opened again.
  const auto cut = [&](std::size_t at, bool endsHere) {
    NodeIndex inside = element;
    for (NodeIndex inner = element + 1; inner < node.next; ++inner) {
      const Node& each = page.At(inner);
      if (each.IsElement() && each.contentBegin <= at && at <= each.contentEnd &&
          each.hasStartTag && each.contentBegin < each.contentEnd)
        inside = inner;
    }
    std::u16string closed;
    std::u16string opened;
    for (const NodeIndex each : ElementsBelow(page, inside, element)) {
      closed += EndTag(page, page.At(each));
      opened = StartTagAgain(page, page.At(each)) + opened;
    }
    edits.Insert(at, endsHere ? closed + EndTag(page, node) + opened
                              : closed + StartTagAgain(page, node) + opened);
  };
  if (HasContent(page, node.contentBegin, begin))
    cut(begin, true);
  else
    edits.Remove(node.begin, node.contentBegin);
  if (HasContent(page, end, node.contentEnd))
    cut(end, false);
  else
    edits.Remove(node.contentEnd, node.end);
  return true;
}

}  // namespace

Selection Author::WordAt(const Selection& selection) const {
  if (!selection.IsCaret() || !page_.At(selection.from.node).IsText()) return selection;
  const Node& node = page_.At(selection.from.node);
  const auto read = ReadText(page_.SourceOf(node), node.begin);
  if (!read) return selection;
  const auto isWord = [](char16_t c) {
    return c > 0xA0 ||
           (c < 0x80 && (IsLetter(static_cast<char>(c)) || IsDigit(static_cast<char>(c))));
  };
  const std::size_t unit = read->UnitAt(selection.from.position);
  std::size_t begin = unit;
  std::size_t end = unit;
  while (begin > 0 && isWord(read->text[begin - 1])) --begin;
  while (end < read->text.size() && isWord(read->text[end])) ++end;
  if (begin == unit || end == unit) return selection;  // at a word's edge a caret means no word
  return {{selection.from.node, read->places[begin], read->places[begin]},
          {selection.from.node, read->places[end], read->places[end]}};
}

bool Author::Has(const Selection& selection, const Format& format) const {
  if (selection.IsCaret()) return FormatAround(page_, selection.from.node, format.names) != kNoNode;
  bool any = false;
  bool all = true;
  Reader(page_, selection.Begin(), selection.End())
      .EachLeaf([&](NodeIndex node, std::size_t begin, std::size_t end) {
        if (begin >= end || page_.At(node).IsIn("br")) return;
        any = true;
        all = all && FormatAround(page_, node, format.names) != kNoNode;
      });
  return any && all;
}

std::optional<Change> Author::Toggle(const Selection& caret, const Format& format) const {
  const Selection selection = WordAt(caret);
  if (selection.IsCaret()) return std::nullopt;
  const Reader part(page_, selection.Begin(), selection.End());
  if (part.TouchesLocked()) return std::nullopt;
  Edits edits;
  if (Has(selection, format)) {
    std::vector<NodeIndex> done;
    bool fine = true;
    part.EachLeaf([&](NodeIndex node, std::size_t begin, std::size_t end) {
      if (begin >= end) return;
      const NodeIndex element = FormatAround(page_, node, format.names);
      if (element == kNoNode || std::ranges::find(done, element) != done.end()) return;
      done.push_back(element);
      fine = Unwrap(page_, element, selection, edits) && fine;
    });
    if (!fine) return std::nullopt;
  } else {
    const std::u16string name = Wide(format.names.substr(0, format.names.find(' ')));
    Wrapper(page_, selection.Begin(), selection.End(), format.names, u"<" + name + u">",
            u"</" + name + u">", edits)
        .Wrap(0);
  }
  return edits.Finish(selection.Begin(), selection.End());
}

std::optional<Change> Author::Color(const Selection& caret, std::u16string_view color) const {
  const Selection selection = WordAt(caret);
  if (selection.IsCaret() || Reader(page_, selection.Begin(), selection.End()).TouchesLocked())
    return std::nullopt;
  Edits edits;
  const std::u16string open = u"<span style=\"color:" + WriteValue(color) + u"\">";
  // Another colour for what has one already.
  const NodeIndex span = FormatAround(page_, selection.from.node, "span");
  if (span != kNoNode && page_.At(span).contentBegin == selection.Begin() &&
      page_.At(span).contentEnd == selection.End() &&
      StartTag(page_, page_.At(span)).starts_with(u"<span style=\"color:") &&
      StartTag(page_, page_.At(span)).find(u';') == std::u16string::npos) {
    edits.Replace(page_.At(span).begin, page_.At(span).contentBegin, open);
    return edits.Finish(selection.Begin(), selection.End());
  }
  Wrapper(page_, selection.Begin(), selection.End(), "", open, u"</span>", edits).Wrap(0);
  return edits.Finish(selection.Begin(), selection.End());
}

std::optional<std::u16string> Author::LinkOf(const Selection& selection) const {
  const NodeIndex link = FormatAround(page_, selection.from.node, "a");
  if (link == kNoNode) return std::nullopt;
  const std::u16string tag = StartTag(page_, page_.At(link));
  const auto address = FindAttribute(tag, "href");
  if (!address) return std::nullopt;
  const auto read = ReadText(
      std::u16string_view(tag).substr(address->valueBegin, address->valueEnd - address->valueBegin),
      0);
  return read ? std::optional(read->text) : std::nullopt;
}

std::optional<Change> Author::Link(const Selection& caret, std::u16string_view address) const {
  Edits edits;
  const NodeIndex link = FormatAround(page_, caret.from.node, "a");
  if (link != kNoNode) {
    const Node& node = page_.At(link);
    if (node.locked || !node.hasStartTag) return std::nullopt;
    if (address.empty()) {
      if (!node.hasEndTag) return std::nullopt;
      edits.Remove(node.begin, node.contentBegin);
      edits.Remove(node.contentEnd, node.end);
    } else {
      const std::u16string tag = StartTag(page_, node);
      const std::u16string value = u"href=\"" + WriteValue(address) + u"\"";
      if (const auto old = FindAttribute(tag, "href"))
        edits.Replace(node.begin + old->begin, node.begin + old->end, u" " + value);
      else
        edits.Insert(node.begin + 1 + node.name.size(), u" " + value);
    }
    return edits.Finish(caret.Begin(), caret.End());
  }
  if (address.empty()) return std::nullopt;
  const std::u16string open = u"<a href=\"" + WriteValue(address) + u"\">";
  const Selection selection = WordAt(caret);
  if (selection.IsCaret()) return Insert(selection, open + WriteText(address) + u"</a>");
  if (Reader(page_, selection.Begin(), selection.End()).TouchesLocked()) return std::nullopt;
  Wrapper(page_, selection.Begin(), selection.End(), "a", open, u"</a>", edits).Wrap(0);
  return edits.Finish(selection.Begin(), selection.End());
}

// --- copying ---

namespace {

class Copier {
 public:
  Copier(const Rendering& page, std::size_t begin, std::size_t end,
         std::vector<Author::Piece>& pieces)
      : page_(page), begin_(begin), end_(end), pieces_(pieces) {}

  void Copy(NodeIndex parent) {
    for (NodeIndex child = page_.FirstChild(parent); child != kNoNode;
         child = page_.NextSibling(child)) {
      const Node& node = page_.At(child);
      const std::size_t begin = std::max(begin_, node.begin);
      const std::size_t end = std::min(end_, node.end);
      if (begin >= end) continue;
      const bool whole = begin == node.begin && end == node.end;
      if (whole || node.IsText()) {
        pieces_.push_back({begin, end, {}});
      } else if (node.IsElement()) {
        // What holds the whole selection is not copied.
        const bool around = node.contentBegin <= begin_ && end_ <= node.contentEnd;
        const bool tags = !around && node.hasStartTag && !node.IsIn(kCells);
        if (tags) pieces_.push_back({node.begin, node.contentBegin, {}});
        Copy(child);
        if (tags) pieces_.push_back({0, 0, EndTag(page_, node)});
      }
    }
  }

 private:
  const Rendering& page_;
  std::size_t begin_;
  std::size_t end_;
  std::vector<Author::Piece>& pieces_;
};

}  // namespace

std::vector<Author::Piece> Author::Copy(const Selection& selection) const {
  std::vector<Piece> pieces;
  if (!selection.IsCaret()) Copier(page_, selection.Begin(), selection.End(), pieces).Copy(0);
  return pieces;
}

}  // namespace kvo::design
