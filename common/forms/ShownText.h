// A form's text as a box of a toolkit's shows it. The form's text is never read back from a widget:
// what the user edits is found as a difference, and only that reaches the form, so that what a
// widget cannot show survives beside it. A page never includes this file.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvo {

enum class Lines { one, many };

// What stands for a NUL where that would end a text.
inline constexpr char16_t kSymbolForNull = 0x2400;

// How a toolkit's boxes have texts.
struct TextStyle {
  // What stands for a character, which may be the CR or the LF of a line break.
  std::u16string (*show)(std::string_view character, Lines lines);
  // Whether CR LF is shown as one line break in a single line, too. In several lines it always is.
  bool joinsCrLfInLine;
  // The text that was typed.
  std::string (*typed)(std::u16string_view units, Lines lines);
};

// Positions in the widget count UTF-16 units, those in the form characters (see EditBox).
class ShownText {
 public:
  // The style outlives it.
  ShownText(std::string_view text, Lines lines, const TextStyle& style);

  const std::u16string& Units() const { return units_; }
  Lines Kind() const { return lines_; }
  const TextStyle& Style() const { return *style_; }

  // Clamped to the text.
  int ToWidget(std::size_t character) const;
  // The character that begins at a position, or in which it lies.
  std::size_t ToForm(int position) const;
  // The first character that begins at a position or behind it.
  std::size_t ToFormBehind(int position) const;

 private:
  std::u16string units_;
  std::vector<int> begins_;  // of each character, and the end
  Lines lines_;
  const TextStyle* style_;
};

// A part of a widget's text, in units.
struct UnitRange {
  int start = 0;
  int length = 0;
  bool operator==(const UnitRange&) const = default;
};

// What the user did to a text, for FormRenderer::Edit.
struct TextEdit {
  std::size_t start;  // in characters
  std::size_t length;
  std::string typed;
};

// The edit by which the shown text `before`, with `selected` selected, became `after` with the
// caret behind `caret` units; nothing when nothing was edited. For `selected` the caret stands
// where nobody knows, which may then be behind all that was there.
std::optional<TextEdit> FindEdit(const ShownText& before, const UnitRange& selected,
                                 std::u16string_view after, int caret);

}  // namespace kvo
