// Where a page can hold a control: wherever HTML allows text or elements. HTML sees no elements in
// comments, raw text, CDATA sections and tags, so a control there would be sent unprocessed.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

#include "document/page/Page.h"
#include "document/page/Scanner.h"

namespace kvo::page {

// What surrounds a position in a page.
struct Surroundings {
  enum class Kind {
    content,  // text or elements: can hold a control
    comment,
    conditionalComment,  // "<!--[if ...]>"
    declaration,         // "<!...>", "<?...>": HTML skips to the next ">"
    cdata,
    rawText,  // of `title`, `style`, `script` and the like
    tag,
    attributeValue,
    control,  // its element, its comments, or the text between them
  };

  Kind kind = Kind::content;
  // Offset where it begins: at "<", or at the first byte of a value. 0 for content.
  std::size_t begin = 0;
  // As written in the page: the element's name for raw text and tags, the attribute's for values.
  std::string_view name;
  char quote = '\0';    // around the value; '\0' without one
  std::size_t tag = 0;  // of a value: where its tag begins

  bool CanHoldControl() const { return kind == Kind::content; }
};

// Returns the surroundings of a position (0 to the page's size), as for text inserted there. Takes
// time in proportion to the page. `name` points into the page.
Surroundings SurroundingsAt(const Page& page, std::size_t position);

// How a control's runtime text (UTF-8) can be pasted where the control itself is not allowed.
enum class Pasting {
  no,              // not a single tag, or part of it would end the place
  asItStands,      // without changes
  inSingleQuotes,  // after changing the value's quotes to single ones
};
Pasting PastingOf(const Surroundings& place, std::string_view runtimeText);

// Returns a message that a control is not allowed there, with advice. `line` is where the place
// begins, as in `Place`; offers `runtimeText` if it can be pasted there.
Message CannotHoldControl(const Surroundings& place, std::size_t line,
                          std::string_view runtimeText);

// Finds the surroundings of positions in a part of a page that holds no controls.
class SurroundingsFinder {
 public:
  // `scanner` is before that part, in content.
  explicit SurroundingsFinder(std::string_view text, const Scanner& scanner)
      : text_(text), scanner_(scanner), end_(scanner.Position()) {}

  // Positions must ascend.
  Surroundings At(std::size_t position);

 private:
  void NextThing();
  Surroundings InTag(std::size_t position);

  std::string_view text_;
  Scanner scanner_;

  // The current tag, comment or the like; empty before the first.
  Surroundings thing_;
  std::size_t end_;
  bool openEnd_ = false;  // a position at its end is still inside
  bool isTag_ = false;
  std::size_t tagEnd_ = 0;  // where raw text after the tag begins

  // For a tag: how far its attributes were read, and the last value found.
  TagReader attributes_{{}, 0};
  Surroundings value_;
  std::size_t valueEnd_ = 0;
};

// Finds the surroundings of many positions of a page, in one pass.
class PageSurroundings {
 public:
  explicit PageSurroundings(const Page& page);
  ~PageSurroundings();

  // Positions must ascend.
  Surroundings At(std::size_t position);

 private:
  struct Reading;
  std::unique_ptr<Reading> reading_;
};

}  // namespace kvo::page
