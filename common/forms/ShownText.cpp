#include "common/forms/ShownText.h"

#include <algorithm>

#include "common/forms/FormControls.h"

namespace kvo {
namespace {

bool IsHigh(char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLow(char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

using View = std::u16string_view;

bool Surrounds(View before, const UnitRange& part, View after) {
  const auto start = static_cast<std::size_t>(part.start);
  const std::size_t end = start + static_cast<std::size_t>(part.length);
  if (end > before.size()) return false;
  const std::size_t behind = before.size() - end;
  return after.size() >= start + behind && after.starts_with(before.substr(0, start)) &&
         after.ends_with(before.substr(before.size() - behind));
}

// The part of `before` that was replaced, as near to the caret as the texts allow.
UnitRange ChangedPart(View before, View after, std::size_t caret) {
  std::size_t behind = after.size() - std::min(caret, after.size());
  if (!before.ends_with(after.substr(after.size() - behind))) {
    behind = 0;
    const std::size_t most = std::min(before.size(), after.size());
    while (behind < most && before[before.size() - 1 - behind] == after[after.size() - 1 - behind])
      ++behind;
  }
  const std::size_t most = std::min(before.size(), after.size()) - behind;
  std::size_t start = 0;
  while (start < most && before[start] == after[start]) ++start;
  return {static_cast<int>(start), static_cast<int>(before.size() - behind - start)};
}

// Extends the part to whole characters, before and after the edit.
UnitRange WithWholeCharacters(UnitRange part, View before, View after) {
  auto start = static_cast<std::size_t>(part.start);
  std::size_t behind = before.size() - start - static_cast<std::size_t>(part.length);
  const auto splits = [](View text, std::size_t at) {
    return at > 0 && at < text.size() && IsHigh(text[at - 1]) && IsLow(text[at]);
  };
  if (splits(before, start) || splits(after, start)) --start;
  if (behind > 0 &&
      (splits(before, before.size() - behind) || splits(after, after.size() - behind)))
    --behind;
  return {static_cast<int>(start), static_cast<int>(before.size() - behind - start)};
}

}  // namespace

ShownText::ShownText(std::string_view text, Lines lines, const TextStyle& style)
    : lines_(lines), style_(&style) {
  const bool joinsCrLf = lines == Lines::many || style.joinsCrLfInLine;
  begins_.reserve(text.size() + 1);
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = at;
    // Stray continuation bytes before the first character belong to it.
    while (at == 0 && end < text.size() && !BeginsCharacter(text[end])) ++end;
    if (end == text.size()) break;
    do ++end;
    while (end < text.size() && !BeginsCharacter(text[end]));
    begins_.push_back(static_cast<int>(units_.size()));
    const bool endsCrLf = text[at] == '\n' && at > 0 && text[at - 1] == '\r';
    // When joined, the CR is already shown.
    if (!endsCrLf || !joinsCrLf) units_ += style.show(text.substr(at, end - at), lines);
    at = end;
  }
  begins_.push_back(static_cast<int>(units_.size()));
}

int ShownText::ToWidget(std::size_t character) const {
  return begins_[std::min(character, begins_.size() - 1)];
}

std::size_t ShownText::ToForm(int position) const {
  const auto behind = std::upper_bound(begins_.begin(), begins_.end(), position);
  return behind == begins_.begin() ? 0 : static_cast<std::size_t>(behind - begins_.begin() - 1);
}

std::size_t ShownText::ToFormBehind(int position) const {
  const std::size_t character = ToForm(position);
  return begins_[character] < position ? character + 1 : character;
}

std::optional<TextEdit> FindEdit(const ShownText& before, const UnitRange& selected,
                                 std::u16string_view after, int caret) {
  const std::u16string& old = before.Units();
  // Typing replaces exactly the selection, even with the same text.
  UnitRange part = selected;
  if (!Surrounds(old, selected, after))
    part = ChangedPart(old, after, static_cast<std::size_t>(std::max(caret, 0)));
  part = WithWholeCharacters(part, old, after);
  const auto at = static_cast<std::size_t>(part.start);
  const std::size_t added = after.size() + static_cast<std::size_t>(part.length) - old.size();
  if (part.length == 0 && added == 0) return std::nullopt;
  const std::size_t start = before.ToForm(part.start);
  return TextEdit{start, before.ToFormBehind(part.start + part.length) - start,
                  before.Style().typed(after.substr(at, added), before.Kind())};
}

}  // namespace kvo
