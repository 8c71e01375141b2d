#include "apps/language/Text.h"

#include <algorithm>
#include <utility>

#include "common/text/Blocks.h"

namespace kvo::language {
namespace {

bool Continues(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80; }

// Characters of four bytes are two code units in UTF-16.
std::size_t Utf16UnitsFrom(char first) { return static_cast<unsigned char>(first) >= 0xF0 ? 2 : 1; }

}  // namespace

Text::Text(std::string utf8, Units units) : utf8_(std::move(utf8)), units_(units) { FindLines(); }

void Text::FindLines() {
  lines_.assign(1, 0);
  const char* const begin = utf8_.data();
  const char* const end = begin + utf8_.size();
  for (const char* at = begin; (at = FindAny<'\n', '\r'>(at, end)) != end;) {
    at += *at == '\r' && at + 1 != end && at[1] == '\n' ? 2 : 1;
    lines_.push_back(static_cast<std::size_t>(at - begin));
  }
  foundAt_ = 0;
  found_ = {};
}

std::size_t Text::UnitsOf(std::string_view part) const {
  if (units_ == Units::utf8) return part.size();
  std::size_t count = 0;
  for (const char c : part)
    if (!Continues(c)) count += Utf16UnitsFrom(c);
  return count;
}

Position Text::PositionOf(std::size_t offset) const {
  offset = std::min(offset, utf8_.size());
  const auto next = std::ranges::upper_bound(lines_, offset);
  const auto line = static_cast<std::size_t>(next - lines_.begin()) - 1;
  if (found_.line != line || offset < foundAt_) {
    found_ = {line, 0};
    foundAt_ = lines_[line];
  }
  found_.character += UnitsOf(std::string_view(utf8_).substr(foundAt_, offset - foundAt_));
  foundAt_ = offset;
  return found_;
}

std::size_t Text::EndOf(std::size_t line) const {
  if (line + 1 == lines_.size()) return utf8_.size();
  std::size_t end = lines_[line + 1] - 1;
  if (utf8_[end] == '\n' && end > lines_[line] && utf8_[end - 1] == '\r') --end;
  return end;
}

std::size_t Text::OffsetOf(Position position) const {
  if (position.line >= lines_.size()) return utf8_.size();
  std::size_t at = lines_[position.line];
  const std::size_t end = EndOf(position.line);
  if (units_ == Units::utf8) {
    at += std::min(position.character, end - at);
    while (at < end && at > lines_[position.line] && Continues(utf8_[at])) --at;
    return at;
  }
  for (std::size_t left = position.character; at < end;) {
    const std::size_t units = Utf16UnitsFrom(utf8_[at]);
    if (units > left) break;
    left -= units;
    ++at;
    while (at < end && Continues(utf8_[at])) ++at;
  }
  return at;
}

void Text::Replace(Position begin, Position end, std::string_view utf8) {
  const std::size_t from = OffsetOf(begin);
  const std::size_t to = std::max(from, OffsetOf(end));
  utf8_.replace(from, to - from, utf8);
  FindLines();
}

}  // namespace kvo::language
