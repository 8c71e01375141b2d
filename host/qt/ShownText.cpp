#include "host/qt/ShownText.h"

#include <algorithm>

#include "host/qt/QtText.h"

namespace kvo {
namespace {

constexpr char16_t kSymbolForNull = 0x2400;
constexpr char16_t kSymbolForBreak = 0x21B5;
constexpr char16_t kReplacement = 0xFFFD;

bool BeginsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80; }

// What stands for a unit that means something else in a document.
QChar StandIn(QChar unit) {
  switch (unit.unicode()) {
    case 0:
      return kSymbolForNull;
    case '\r':
      return QLatin1Char('\n');
    case 0x2028:
    case 0x2029:
      return kSymbolForBreak;
    case 0xFDD0:  // Qt's marks of a frame's beginning and end, and of an object in the text
    case 0xFDD1:
    case 0xFFFC:
      return kReplacement;
    default:
      return unit;
  }
}

std::string Typed(const QString& units, Lines lines) {
  if (lines == Lines::one) return FromQt(units);
  QString text;
  for (const QChar unit : units) {
    const bool breaks = unit == QLatin1Char('\n') || unit == QChar::LineSeparator ||
                        unit == QChar::ParagraphSeparator;
    if (breaks)
      text += QLatin1String("\r\n");
    else
      text += unit;
  }
  return FromQt(text);
}

bool Surrounds(const QString& before, const UnitRange& part, const QString& after) {
  const qsizetype behind = before.size() - part.start - part.length;
  return after.size() >= part.start + behind &&
         QStringView(after).left(part.start) == QStringView(before).left(part.start) &&
         QStringView(after).right(behind) == QStringView(before).right(behind);
}

// The part of `before` that is no longer there, as near to the caret as the texts allow.
UnitRange ChangedPart(const QString& before, const QString& after, qsizetype caret) {
  qsizetype behind = after.size() - caret;
  if (!before.endsWith(QStringView(after).right(behind))) {
    behind = 0;
    const qsizetype most = std::min(before.size(), after.size());
    while (behind < most && before[before.size() - 1 - behind] == after[after.size() - 1 - behind])
      ++behind;
  }
  const qsizetype most = std::min(before.size(), after.size()) - behind;
  qsizetype start = 0;
  while (start < most && before[start] == after[start]) ++start;
  // Halves of a character stay together.
  if (start > 0 && before[start - 1].isHighSurrogate()) --start;
  if (behind > 0 && before[before.size() - behind].isLowSurrogate()) --behind;
  return {static_cast<int>(start), static_cast<int>(before.size() - behind - start)};
}

}  // namespace

ShownText::ShownText(std::string_view text, Lines lines) : lines_(lines) {
  begins_.reserve(text.size() + 1);
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = at;
    // Stray continuation bytes in front of the first character belong to it.
    while (at == 0 && end < text.size() && !BeginsCharacter(text[end])) ++end;
    if (end == text.size()) break;
    do ++end;
    while (end < text.size() && !BeginsCharacter(text[end]));
    Append(text.substr(at, end - at), text[at] == '\n' && at > 0 && text[at - 1] == '\r');
    at = end;
  }
  begins_.push_back(static_cast<int>(units_.size()));
}

void ShownText::Append(std::string_view character, bool endsCrLf) {
  begins_.push_back(static_cast<int>(units_.size()));
  if (lines_ == Lines::many && endsCrLf) return;  // its CR shows already
  for (const QChar unit : ToQt(character)) units_ += lines_ == Lines::many ? StandIn(unit) : unit;
}

int ShownText::ToWidget(std::size_t character) const {
  return begins_[std::min(character, begins_.size() - 1)];
}

std::size_t ShownText::ToForm(int position) const {
  const auto behind = std::ranges::upper_bound(begins_, position);
  return behind == begins_.begin() ? 0 : static_cast<std::size_t>(behind - begins_.begin() - 1);
}

std::size_t ShownText::ToFormBehind(int position) const {
  const std::size_t character = ToForm(position);
  return begins_[character] < position ? character + 1 : character;
}

std::optional<TextEdit> FindEdit(const ShownText& before, const UnitRange& selected,
                                 const QString& after, int caret) {
  const QString& old = before.Units();
  // Typing replaces just what is selected, even by the same text.
  UnitRange part = selected;
  if (!Surrounds(old, selected, after)) part = ChangedPart(old, after, caret);
  const auto added = after.size() - (old.size() - part.length);
  if (part.length == 0 && added == 0) return std::nullopt;
  const std::size_t start = before.ToForm(part.start);
  return TextEdit{start, before.ToFormBehind(part.start + part.length) - start,
                  Typed(after.mid(part.start, added), before.Kind())};
}

}  // namespace kvo
