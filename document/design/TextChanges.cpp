// Changes of the text of a page.
#include <algorithm>

#include "document/design/Changes.h"
#include "document/design/Parts.h"

namespace kvo::design {
namespace {

constexpr std::string_view kParagraphs =
    "p h1 h2 h3 h4 h5 h6 li dt dd div blockquote address center pre";

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

std::optional<Change> Author::Type(const Selection& selection, std::u16string_view text) const {
  return Insert(selection, WrittenAfter(page_, selection.from, text));
}

std::optional<Change> Author::Insert(const Selection& selection, std::u16string_view markup) const {
  Edits edits;
  const std::size_t begin = selection.IsCaret() ? selection.from.position : selection.Begin();
  const std::size_t end = selection.IsCaret() ? begin : selection.End();
  const SourcePart part(page_, begin, end);
  if (part.TouchesLocked()) return std::nullopt;
  if (markup.empty() || !selection.IsCaret()) {
    if (begin < end) Erase(page_, begin, end, edits);
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

std::vector<Author::Piece> Author::Copy(const Selection& selection) const {
  std::vector<Piece> pieces;
  if (!selection.IsCaret()) Copier(page_, selection.Begin(), selection.End(), pieces).Copy(0);
  return pieces;
}

}  // namespace kvo::design
