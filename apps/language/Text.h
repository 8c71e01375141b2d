// A text as clients count it: lines, and in them code units.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kvo::language {

// In what clients count columns. UTF-16 unless both sides agree on UTF-8.
enum class Units { utf16, utf8 };

// Counts from 0. A line ends with CR LF, LF or CR.
struct Position {
  std::size_t line = 0;
  std::size_t character = 0;
  bool operator==(const Position&) const = default;
};

class Text {
 public:
  explicit Text(std::string utf8, Units units = Units::utf16);

  const std::string& Utf8() const { return utf8_; }

  // Returns the position of an offset in bytes. Ascending offsets are found fastest.
  Position PositionOf(std::size_t offset) const;
  // Returns the offset of a position. One inside a character is at its beginning, one past the end
  // of its line at that end, one past the last line at the end of the text.
  std::size_t OffsetOf(Position position) const;

  // Replaces a part, both ends as OffsetOf finds them. A part that ends before it begins is empty.
  void Replace(Position begin, Position end, std::string_view utf8);

 private:
  void FindLines();
  std::size_t UnitsOf(std::string_view part) const;
  // The end of a line, before its line break.
  std::size_t EndOf(std::size_t line) const;

  std::string utf8_;
  Units units_;
  std::vector<std::size_t> lines_;  // where each begins
  // The last position found, from which the next one on its line is counted.
  mutable std::size_t foundAt_ = 0;
  mutable Position found_;
};

}  // namespace kvo::language
