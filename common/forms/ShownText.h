// A form's text as a toolkit's box shows it. Never reads the form's text back from a widget: finds
// the user's edit as a difference and passes only that to the form, so that text the widget cannot
// show survives. Pages never include this file.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvo {

enum class Lines { one, many };

// Shown for a NUL where a real one would end the text.
inline constexpr char16_t kSymbolForNull = 0x2400;

// How a toolkit's boxes show texts.
struct TextStyle {
  // Returns what to show for a character, which may be the CR or the LF of a line break.
  std::u16string (*show)(std::string_view character, Lines lines);
  // Whether a single line shows CR LF as one line break. Several lines always do.
  bool joinsCrLfInLine;
  // Converts typed text for the form.
  std::string (*typed)(std::u16string_view units, Lines lines);
};

// Widget positions count UTF-16 units, form positions count characters (see EditBox).
class ShownText {
 public:
  // `style` must outlive it.
  ShownText(std::string_view text, Lines lines, const TextStyle& style);

  const std::u16string& Units() const { return units_; }
  Lines Kind() const { return lines_; }
  const TextStyle& Style() const { return *style_; }

  // Clamped to the text.
  int ToWidget(std::size_t character) const;
  // The character that contains the position.
  std::size_t ToForm(int position) const;
  // The first character that begins at the position or behind it.
  std::size_t ToFormBehind(int position) const;

 private:
  std::u16string units_;
  std::vector<int> begins_;  // of each character, and the end
  Lines lines_;
  const TextStyle* style_;
};

// A part of a widget's text, in UTF-16 units.
struct UnitRange {
  int start = 0;
  int length = 0;
  bool operator==(const UnitRange&) const = default;
};

// A user's edit, for FormRenderer::Edit.
struct TextEdit {
  std::size_t start;  // in characters
  std::size_t length;
  std::string typed;
};

// Finds the edit that turned the shown text `before`, with `selected` selected, into `after`, with
// the caret behind `caret` units; nothing when nothing changed. A caller that does not know the
// former selection passes the caret as `selected`, which may then be past the end of `before`.
std::optional<TextEdit> FindEdit(const ShownText& before, const UnitRange& selected,
                                 std::u16string_view after, int caret);

}  // namespace kvo
