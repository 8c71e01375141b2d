#include "document/design/RenderedText.h"

#include <algorithm>
#include <cstdint>

#include "common/values/Ascii.h"
#include "document/page/CharacterReferences.h"
#include "document/page/Utf8.h"

namespace kvo::design {
namespace {

// Returns the ASCII characters of a reference that begins with "&", and one more character, which
// decides whether a name without semicolon goes on.
std::string ReferenceAt(std::u16string_view source) {
  std::string reference(1, '&');
  for (const char16_t c : source.substr(1)) {
    if (c >= 0x80) break;
    reference += static_cast<char>(c);
    if (c != u'#' && !IsLetter(static_cast<char>(c)) && !IsDigit(static_cast<char>(c))) break;
  }
  return reference;
}

void AppendUtf16(std::u16string& text, char32_t character) {
  if (character < 0x10000) {
    text += static_cast<char16_t>(character);
    return;
  }
  text += static_cast<char16_t>(0xD7C0 + (character >> 10));
  text += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
}

bool BeginsMarkup(std::u16string_view source) {
  if (source.size() < 2 || source[0] != u'<') return false;
  const char16_t next = source[1];
  return next == u'/' || next == u'!' || next == u'?' ||
         (next < 0x80 && IsLetter(static_cast<char>(next)));
}

std::u16string Reference(char16_t c) {
  std::u16string reference = u"&#";
  for (const char digit : std::to_string(static_cast<unsigned>(c)))
    reference += static_cast<char16_t>(digit);
  return reference + u';';
}

std::u16string Write(std::u16string_view text, bool inValue) {
  std::u16string written;
  for (const char16_t c : text) {
    switch (c) {
      case u'&':
        written += u"&amp;";
        break;
      case u'<':
        written += u"&lt;";
        break;
      case u'>':
        written += u"&gt;";
        break;
      case 0xA0:
        written += u"&nbsp;";
        break;
      case u'"':
        written += inValue ? u"&quot;" : u"\"";
        break;
      default:
        written += c;
    }
  }
  return written;
}

}  // namespace

bool RenderedText::IsBlank() const { return std::ranges::all_of(text, design::IsBlank); }

std::size_t RenderedText::UnitAt(std::size_t offset) const {
  return static_cast<std::size_t>(std::ranges::lower_bound(places, offset) - places.begin());
}

std::optional<RenderedText> ReadText(std::u16string_view source, std::size_t offset) {
  RenderedText read;
  std::string utf8;
  for (std::size_t at = 0; at < source.size();) {
    const char16_t c = source[at];
    std::size_t length = 0;
    if (c == u'<' && BeginsMarkup(source.substr(at))) return std::nullopt;
    if (c == u'&') {
      utf8.clear();
      length = page::AppendCharacterReference(ReferenceAt(source.substr(at)), utf8,
                                              page::ReferenceIn::text);
    }
    if (length == 0) {
      read.text += c;
      length = 1;
    }
    for (std::string_view rest = utf8; c == u'&' && !rest.empty();) {
      const page::Utf8Character first = page::FirstUtf8Character(rest);
      AppendUtf16(read.text, first.character);
      rest.remove_prefix(first.length);
    }
    utf8.clear();
    read.places.resize(read.text.size(), offset + at);
    at += length;
  }
  read.places.push_back(offset + source.size());
  return read;
}

std::u16string WriteText(std::u16string_view text) { return Write(text, false); }
std::u16string WriteValue(std::u16string_view text) { return Write(text, true); }

std::optional<TextChange> ChangeText(std::u16string_view source, std::size_t offset,
                                     std::size_t begin, std::size_t end,
                                     std::u16string_view added) {
  const auto before = ReadText(source, offset);
  if (!before || begin > end || end > before->text.size()) return std::nullopt;
  const std::u16string wanted =
      before->text.substr(0, begin) + std::u16string(added) + before->text.substr(end);
  TextChange change{before->places[begin], before->places[end], WriteText(added)};
  const auto fits = [&] {
    std::u16string after(source);
    after.replace(change.begin - offset, change.end - change.begin, change.written);
    const auto read = ReadText(after, offset);
    return read && read->text == wanted;
  };
  if (fits()) return change;
  const bool isPair = !added.empty() && added.front() >= 0xD800 && added.front() < 0xE000;
  if (!added.empty() && !isPair) {
    change.written = Reference(added.front()) + WriteText(added.substr(1));
    if (fits()) return change;
  }
  // An "&" or "<" that stood for itself has to be written as a reference now.
  if (begin == 0) return std::nullopt;
  change = {before->places[begin - 1], before->places[end],
            WriteText(before->text.substr(begin - 1, 1) + std::u16string(added))};
  if (fits()) return change;
  return std::nullopt;
}

}  // namespace kvo::design
