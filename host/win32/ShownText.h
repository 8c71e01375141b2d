// A form's text as an edit box of Windows shows it. The form's text is never read back from a
// window: what the user edits is found as a difference, and only that reaches the form, so that
// what a window cannot show survives beside it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvo {

enum class Lines { one, many };

// Positions in the window count UTF-16 units, those in the form characters (see EditBox). A line
// break, which is CR LF, CR or LF, is CR LF with Lines::many, and one sign with Lines::one. A NUL
// has a stand-in.
class ShownText {
 public:
  ShownText(std::string_view text, Lines lines);

  const std::wstring& Units() const { return units_; }
  Lines Kind() const { return lines_; }

  // Clamped to the text.
  int ToWindow(std::size_t character) const;
  // The character that begins at a position, or in which it lies.
  std::size_t ToForm(int position) const;
  // The first character that begins at a position or behind it.
  std::size_t ToFormBehind(int position) const;

 private:
  void Append(std::string_view character, bool endsCrLf);

  std::wstring units_;
  std::vector<int> begins_;  // of each character, and the end
  Lines lines_;
};

// A part of a window's text, in units.
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
// caret behind `caret` units; nothing when nothing was edited.
std::optional<TextEdit> FindEdit(const ShownText& before, const UnitRange& selected,
                                 const std::wstring& after, int caret);

// A text from elsewhere as several lines can take it: every line break is CR LF.
std::wstring WithWindowsBreaks(std::wstring_view text);

}  // namespace kvo
