// Changes of paragraphs, headings and lists.
#include <algorithm>
#include <utility>

#include "document/design/Changes.h"
#include "document/design/Parts.h"

namespace kvo::design {
namespace {

constexpr std::string_view kHeadings = "h1 h2 h3 h4 h5 h6";
constexpr std::string_view kRenamed = "p h1 h2 h3 h4 h5 h6";
constexpr std::string_view kLists = "ul ol";

// The innermost blocks that hold leaves of the selection, in order.
std::vector<NodeIndex> BlocksOf(const Rendering& page, const Selection& selection) {
  std::vector<NodeIndex> blocks;
  const auto add = [&](NodeIndex node) {
    const NodeIndex block = BlockAround(page, node);
    if (block != kNoNode && (blocks.empty() || blocks.back() != block)) blocks.push_back(block);
  };
  add(selection.from.node);
  if (!selection.IsCaret())
    SourcePart(page, selection.Begin(), selection.End())
        .EachLeaf([&](NodeIndex node, std::size_t begin, std::size_t end) {
          if (begin < end) add(node);
        });
  return blocks;
}

void Rename(const Node& node, std::string_view name, Edits& edits) {
  edits.Replace(node.begin + 1, node.begin + 1 + node.name.size(), FromAscii(name));
  if (node.hasEndTag)
    edits.Replace(node.contentEnd + 2, node.contentEnd + 2 + node.name.size(), FromAscii(name));
  else if (name != "p" && name != "li")  // which close by themselves
    edits.Insert(node.contentEnd, u"</" + FromAscii(name) + u">");
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
  if (SourcePart(page_, begin, end).TouchesLocked()) return std::nullopt;
  if (begin < end) Erase(page_, begin, end, edits);

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
  const bool leftEmpty = !SourcePart(page_, around.contentBegin, begin).HasContent();
  const bool rightEmpty = !SourcePart(page_, end, around.contentEnd).HasContent();
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
  const bool last =
      block == kNoNode || !SourcePart(page_, end, page_.At(block).contentEnd).HasContent();
  if (last && selection.IsCaret() && Placeholder(page_, selection.from))
    return Insert(selection, u"<br><br>");
  auto change = Insert(selection, last ? u"<br><br>" : u"<br>");
  if (change && last) change->begin = change->end -= 4;
  return change;
}

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
    edits.Insert(begin, u"<" + FromAscii(name) + u">");
    edits.Insert(end, u"</" + FromAscii(name) + u">");
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
  const std::u16string open = u"<" + FromAscii(name) + u">";
  const std::u16string close = u"</" + FromAscii(name) + u">";
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

}  // namespace kvo::design
