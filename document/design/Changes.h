// What authors do to a rendered page, as edits of its source. Nothing but the edited place changes;
// tags are added, renamed or removed as a whole and otherwise stay as they are written.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/design/Rendering.h"

namespace kvo::design {

// `from` is not after `to`. A caret has both at one place.
struct Selection {
  Point from;
  Point to;

  // The selected source. Between children it is as short as possible.
  std::size_t Begin() const { return from.next; }
  std::size_t End() const { return std::max(from.next, to.position); }
  bool IsCaret() const { return from.node == to.node && from.position == to.position; }
};

struct Change {
  std::vector<Edit> edits;  // ascending, without overlaps
  // What is selected then, in the source after the edits.
  std::size_t begin = 0;
  std::size_t end = 0;
};

struct Format {
  std::string_view names;       // of the elements that have it; the first is the one to write
  std::string_view properties;  // of the styles that set it
  std::string_view values;      // those that mean it, in front
};
namespace formats {
inline constexpr Format bold = {"b strong", "font-weight", "bold bolder 600 700 800 900"};
inline constexpr Format italic = {"i em", "font-style", "italic oblique"};
inline constexpr Format underline = {"u ins", "text-decoration text-decoration-line", "underline"};
}  // namespace formats

// Each returns nothing when there is nothing to do, or where the edit would touch a place that
// cannot be edited.
class Author {
 public:
  explicit Author(const Rendering& page) : page_(page) {}

  // Replaces the selection by text; an empty one deletes. Joins the paragraphs that it begins and
  // ends in.
  std::optional<Change> Type(const Selection& selection, std::u16string_view text) const;
  // Inserts lines of text, as pasted from elsewhere.
  std::optional<Change> TypeLines(const Selection& selection, std::u16string_view text) const;
  // Ends a paragraph, heading or list item and begins the next; elsewhere breaks the line.
  std::optional<Change> Enter(const Selection& selection) const;
  std::optional<Change> BreakLine(const Selection& selection) const;
  // Inserts markup that is one thing, such as a picture.
  std::optional<Change> Insert(const Selection& selection, std::u16string_view markup) const;

  // Adds a format, or takes it away where everything selected has it. A caret means its word.
  std::optional<Change> Toggle(const Selection& selection, const Format& format) const;
  // Whether everything selected has a format, by an element or by an element's style.
  bool Has(const Selection& selection, const Format& format) const;
  // Types at a caret with formats turned around: without those that it has, and with those that it
  // lacks.
  std::optional<Change> TypeToggled(const Selection& caret, std::u16string_view text,
                                    const std::vector<const Format*>& formats) const;
  // Makes a link, changes the one that the selection is in, or removes it if `address` is empty.
  std::optional<Change> Link(const Selection& selection, std::u16string_view address) const;
  // The address of the link that the selection is in, as written.
  std::optional<std::u16string> LinkOf(const Selection& selection) const;
  // `color` as in style sheets.
  std::optional<Change> Color(const Selection& selection, std::u16string_view color) const;

  // Renames the paragraphs and headings of the selection; `name` is p or h1 to h6.
  std::optional<Change> MakeBlocks(const Selection& selection, std::string_view name) const;
  // Makes the selected paragraphs a list, or paragraphs of the selected items.
  std::optional<Change> ToggleList(const Selection& selection, std::string_view name) const;

  // The parts of the source that the selection holds, with the tags that complete them.
  struct Piece {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::u16string added;  // instead of a part of the source
  };
  std::vector<Piece> Copy(const Selection& selection) const;

 private:
  // Returns the word around a caret; the selection itself where there is none.
  Selection WordAt(const Selection& selection) const;

  const Rendering& page_;
};

}  // namespace kvo::design
