// The text of a page as it is rendered, and how the source writes it. Counts UTF-16 code units, as
// browsers do.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvo::design {

// White space that browsers collapse.
constexpr bool IsBlank(char16_t c) {
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\f';
}

// A rendered text whose characters know their places in the source.
struct RenderedText {
  std::u16string text;
  // The offset in the source of each code unit, and then the end. The two units of a surrogate pair
  // that a reference writes share one offset.
  std::vector<std::size_t> places;

  bool IsBlank() const;
  // The number of the first unit that begins at or after an offset in the source.
  std::size_t UnitAt(std::size_t offset) const;
};

// Reads a part of the source that begins at `offset`; nothing if there is markup in it.
std::optional<RenderedText> ReadText(std::u16string_view source, std::size_t offset);

// Writes a text so that a browser shows exactly it.
std::u16string WriteText(std::u16string_view text);
// Writes a text as the value of an attribute in double quotes.
std::u16string WriteValue(std::u16string_view text);

// Returns what to write for the units [begin, end) of a text to become `added`, as a replacement of
// the source between two offsets. Writes a character next to an "&" as a reference where the two
// would become one.
struct TextChange {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::u16string written;
};
std::optional<TextChange> ChangeText(std::u16string_view source, std::size_t offset,
                                     std::size_t begin, std::size_t end, std::u16string_view added);

}  // namespace kvo::design
