// Where in a page a control can stand: wherever HTML has text or elements. In comments, raw text,
// CDATA sections and tags HTML sees no elements, so a control there would go out as it is.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "document/page/Page.h"
#include "document/page/Scanner.h"

namespace kvo::page {

// What a position in a page is inside of.
struct Surroundings {
  enum class Kind {
    content,  // text or elements: here a control can stand
    comment,
    conditionalComment,  // "<!--[if ...]>"
    declaration,         // "<!...>", "<?...>": what HTML skips as far as the next ">"
    cdata,
    rawText,  // of `title`, `style`, `script` and the like
    tag,
    attributeValue,
    control,  // its element, its comments, or the text between these
  };

  Kind kind = Kind::content;
  // Offset of what it begins with: "<", or the first byte of a value. 0 for content.
  std::size_t begin = 0;
  // As the page has it: the element's name for raw text and tags, the attribute's for values.
  std::string_view name;
  char quote = '\0';  // around the value, if there is one

  bool CanHoldControl() const { return kind == Kind::content; }
};

// The surroundings of a position (0 to the page's size), that is, of what would be inserted there.
// Takes time in proportion to the page. `name` points into the page.
Surroundings SurroundingsAt(const Page& page, std::size_t position);

// How a control's runtime text (UTF-8) can be pasted where the control itself cannot stand.
enum class Pasting {
  no,              // it is not a single tag, or something in it would end the place
  asItStands,      // nothing needs to be changed
  inSingleQuotes,  // after the value's own quotes were made single ones
};
Pasting PastingOf(const Surroundings& place, std::string_view runtimeText);

// Says that a control cannot stand there and what to do. `line` is that in which the place begins,
// as in `Place`; `runtimeText` is offered if it can be pasted there.
Message CannotHoldControl(const Surroundings& place, std::size_t line,
                          std::string_view runtimeText);

// Goes over a stretch of a page that holds no controls, and answers the surroundings of positions
// in it.
class SurroundingsFinder {
 public:
  // `scanner` is in front of the stretch, in content.
  explicit SurroundingsFinder(std::string_view text, const Scanner& scanner)
      : text_(text), scanner_(scanner), end_(scanner.Position()) {}

  // No position may be smaller than the one before.
  Surroundings At(std::size_t position);

 private:
  void NextThing();
  Surroundings InTag(std::size_t position);

  std::string_view text_;
  Scanner scanner_;

  // A tag, comment or the like; before the first there is an empty one.
  Surroundings thing_;
  std::size_t end_;
  bool openEnd_ = false;  // a position at its end is still inside
  bool isTag_ = false;
  std::size_t tagEnd_ = 0;  // where raw text behind the tag begins

  // Of a tag: how far its attributes were read, and the value found last.
  TagReader attributes_{{}, 0};
  Surroundings value_;
  std::size_t valueEnd_ = 0;
};

}  // namespace kvo::page
