// A form's text as a box shows it. The form's text is never read back from a widget: what the user
// edits is found as a difference, and only that reaches the form, so that what a widget cannot show
// survives beside it.
#pragma once

#include <QString>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvo {

enum class Lines { one, many };

// Positions in the widget count UTF-16 units, those in the form characters (see EditBox). With
// Lines::many a line break, which is CR LF, CR or LF, is one LF, and characters that a document
// would take for something else have stand-ins.
class ShownText {
 public:
  ShownText(std::string_view text, Lines lines);

  const QString& Units() const { return units_; }
  Lines Kind() const { return lines_; }

  // Clamped to the text.
  int ToWidget(std::size_t character) const;
  // The character that begins at a position, or in which it lies.
  std::size_t ToForm(int position) const;
  // The first character that begins at a position or behind it.
  std::size_t ToFormBehind(int position) const;

 private:
  void Append(std::string_view character, bool endsCrLf);

  QString units_;
  std::vector<int> begins_;  // of each character, and the end
  Lines lines_;
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
// caret behind `caret` units; nothing when nothing was edited. A line break that was typed is CR
// LF.
std::optional<TextEdit> FindEdit(const ShownText& before, const UnitRange& selected,
                                 const QString& after, int caret);

}  // namespace kvo
