#include "tests/design/Marked.h"

#include "document/page/Utf8.h"

namespace kvo::design {

std::u16string Wide(std::string_view utf8) {
  std::u16string text;
  while (!utf8.empty()) {
    const page::Utf8Character first = page::FirstUtf8Character(utf8);
    utf8.remove_prefix(first.length);
    if (first.character >= 0x10000) {
      text += static_cast<char16_t>(0xD7C0 + (first.character >> 10));
      text += static_cast<char16_t>(0xDC00 + (first.character & 0x3FF));
    } else {
      text += static_cast<char16_t>(first.character);
    }
  }
  return text;
}

std::string Narrow(std::u16string_view text) {
  std::string utf8;
  for (std::size_t at = 0; at < text.size(); ++at) {
    char32_t character = text[at];
    if (character >= 0xD800 && character < 0xDC00 && at + 1 < text.size())
      character = ((character - 0xD7C0) << 10) + (static_cast<char32_t>(text[++at]) & 0x3FF);
    page::AppendUtf8(utf8, character);
  }
  return utf8;
}

MarkedPage ReadMarked(std::string_view text) {
  MarkedPage page;
  for (const char16_t c : Wide(text)) {
    if (c == u'‹' || c == u'|') page.begin = page.end = page.source.size();
    if (c == u'›') page.end = page.source.size();
    if (c != u'‹' && c != u'›' && c != u'|') page.source += c == u'#' ? u'\uFFFC' : c;
  }
  return page;
}

std::string WriteMarked(const MarkedPage& page) {
  std::u16string text = page.source;
  for (char16_t& c : text)
    if (c == u'\uFFFC') c = u'#';
  if (page.begin == page.end) return Narrow(text.insert(page.begin, u"|"));
  text.insert(page.end, u"›");
  return Narrow(text.insert(page.begin, u"‹"));
}

Rendering RenderingOf(const std::u16string& source) {
  std::vector<BoxPlace> boxes;
  for (std::size_t at = source.find(u'\uFFFC'); at != std::u16string::npos;
       at = source.find(u'\uFFFC', at + 1))
    boxes.push_back({at, 1});
  return {source, boxes};
}

std::optional<Selection> SelectionOf(const Rendering& rendering, const MarkedPage& page) {
  const auto from = rendering.PlaceOf(page.begin);
  const auto to = rendering.PlaceOf(page.end);
  if (!from || !to) return std::nullopt;
  const auto begin = rendering.Find(*from);
  const auto end = rendering.Find(*to);
  if (!begin || !end) return std::nullopt;
  return Selection{*begin, *end};
}

void ApplyTo(std::u16string& source, const std::vector<Edit>& edits) {
  for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit)
    source.replace(edit->begin, edit->end - edit->begin, edit->text);
}

}  // namespace kvo::design
