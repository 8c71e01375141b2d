// Changes of formats, links and colours.
#include <algorithm>
#include <utility>

#include "common/values/Ascii.h"
#include "document/design/Changes.h"
#include "document/design/Parts.h"

namespace kvo::design {
namespace {

NodeIndex FormatAround(const Rendering& page, NodeIndex node, std::string_view names) {
  for (; node != kNoNode; node = page.At(node).parent) {
    const Node& each = page.At(node);
    if (each.IsIn(names)) return node;
    if (each.IsElement() && !IsInline(each)) return kNoNode;
  }
  return kNoNode;
}

bool IsOneOf(std::string_view names, std::string_view name) {
  while (!names.empty()) {
    const std::size_t end = std::min(names.find(' '), names.size());
    if (names.substr(0, end) == name) return true;
    names.remove_prefix(std::min(end + 1, names.size()));
  }
  return false;
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t\n\r\f");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t\n\r\f") + 1 - begin);
}

// What an element's style says about a format; nothing if it does not mention it.
std::optional<bool> StyledAs(const Rendering& page, const Node& node, const Format& format) {
  if (!node.hasStartTag) return std::nullopt;
  const std::u16string tag = StartTag(page, node);
  const auto style = FindAttribute(tag, "style");
  if (!style) return std::nullopt;
  std::string declarations;
  for (const char16_t c : tag.substr(style->valueBegin, style->valueEnd - style->valueBegin))
    declarations += c < 0x80 ? LowerAscii(static_cast<char>(c)) : '?';
  std::optional<bool> styled;
  for (std::string_view rest = declarations; !rest.empty();) {
    const std::size_t end = std::min(rest.find(';'), rest.size());
    const std::string_view declaration = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    const std::size_t colon = std::min(declaration.find(':'), declaration.size());
    if (!IsOneOf(format.properties, Trimmed(declaration.substr(0, colon)))) continue;
    styled = false;
    std::string_view values = Trimmed(declaration.substr(std::min(colon + 1, declaration.size())));
    while (!values.empty()) {
      const std::size_t blank = std::min(values.find_first_of(" !"), values.size());
      if (IsOneOf(format.values, values.substr(0, blank))) styled = true;
      values.remove_prefix(std::min(blank + 1, values.size()));
    }
  }
  return styled;
}

bool IsFormatted(const Rendering& page, NodeIndex node, const Format& format) {
  for (; node != kNoNode; node = page.At(node).parent) {
    const Node& each = page.At(node);
    if (!each.IsElement()) continue;
    if (!IsInline(each)) return false;
    if (const auto styled = StyledAs(page, each, format)) return *styled;
    if (each.IsIn(format.names)) return true;
  }
  return false;
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
      if (each.IsElement() && !IsInline(each) && !SourcePart::IsThing(each)) return false;
      if (each.kind != Node::Kind::text && !SourcePart::IsThing(each)) continue;
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
  if (SourcePart(page, node.contentBegin, begin).HasContent())
    cut(begin, true);
  else
    edits.Remove(node.begin, node.contentBegin);
  if (SourcePart(page, end, node.contentEnd).HasContent())
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
  if (selection.IsCaret()) return IsFormatted(page_, selection.from.node, format);
  bool any = false;
  bool all = true;
  SourcePart(page_, selection.Begin(), selection.End())
      .EachLeaf([&](NodeIndex node, std::size_t begin, std::size_t end) {
        if (begin >= end || page_.At(node).IsIn("br")) return;
        any = true;
        all = all && IsFormatted(page_, node, format);
      });
  return any && all;
}

std::optional<Change> Author::Toggle(const Selection& caret, const Format& format) const {
  const Selection selection = WordAt(caret);
  if (selection.IsCaret()) return std::nullopt;
  const SourcePart part(page_, selection.Begin(), selection.End());
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
    const std::u16string name = FromAscii(format.names.substr(0, format.names.find(' ')));
    Wrapper(page_, selection.Begin(), selection.End(), format.names, u"<" + name + u">",
            u"</" + name + u">", edits)
        .Wrap(0);
  }
  return edits.Finish(selection.Begin(), selection.End());
}

std::optional<Change> Author::TypeToggled(const Selection& caret, std::u16string_view text,
                                          const std::vector<const Format*>& formats) const {
  if (!caret.IsCaret() || text.empty()) return std::nullopt;
  std::size_t at = caret.from.position;
  if (SourcePart(page_, at, at).TouchesLocked()) return std::nullopt;
  std::u16string before;
  std::u16string after;
  NodeIndex outermost = kNoNode;
  std::vector<NodeIndex> left;
  for (const Format* format : formats) {
    if (!Has(caret, *format)) {
      const std::u16string name = FromAscii(format->names.substr(0, format->names.find(' ')));
      before += u"<" + name + u">";
      after = u"</" + name + u">" + after;
      continue;
    }
    const NodeIndex element = FormatAround(page_, caret.from.node, format->names);
    if (element == kNoNode || !page_.At(element).hasEndTag) return std::nullopt;
    left.push_back(element);
    if (outermost == kNoNode || element < outermost) outermost = element;
  }
  std::u16string closed;
  std::u16string opened;
  if (outermost != kNoNode) {
    const Node& node = page_.At(outermost);
    for (const NodeIndex each :
         ElementsBelow(page_,
                       page_.At(caret.from.node).IsText() ? page_.At(caret.from.node).parent
                                                          : caret.from.node,
                       node.parent)) {
      const Node& inner = page_.At(each);
      closed += EndTag(page_, inner);
      opened = StartTagAgain(page_, inner) + opened;
      if (std::ranges::find(left, each) != left.end()) continue;
      before = StartTagAgain(page_, inner) + before;
      after += EndTag(page_, inner);
    }
    // At the edge of what it leaves, nothing has to be divided.
    const bool last = !SourcePart(page_, at, node.contentEnd).HasContent();
    const bool first = !SourcePart(page_, node.contentBegin, at).HasContent();
    if (last || first) {
      at = last ? node.end : node.begin;
      closed.clear();
      opened.clear();
    }
  }
  Edits edits;
  edits.Insert(at, closed + before + WriteText(text) + after + opened);
  auto change = edits.Finish(at, at);
  change->begin = change->end = at + (closed + before + WriteText(text)).size();
  return change;
}

std::optional<Change> Author::Color(const Selection& caret, std::u16string_view color) const {
  const Selection selection = WordAt(caret);
  if (selection.IsCaret() || SourcePart(page_, selection.Begin(), selection.End()).TouchesLocked())
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
  if (SourcePart(page_, selection.Begin(), selection.End()).TouchesLocked()) return std::nullopt;
  Wrapper(page_, selection.Begin(), selection.End(), "a", open, u"</a>", edits).Wrap(0);
  return edits.Finish(selection.Begin(), selection.End());
}

}  // namespace kvo::design
