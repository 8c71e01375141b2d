// Finds possible controls in a page, byte by byte and without building a tree: `object` start tags
// and the comments of saved spans. Follows the HTML tokenizer, and so finds nothing in quoted
// attributes, comments, bogus comments, CDATA sections inside `svg` and `math`, and the text of
// `script`, `style`, `title` and the like.
#pragma once

#include <cstddef>
#include <string_view>

#include "common/text/Blocks.h"

namespace kvo::page {

// The offset of something that was not found.
inline constexpr std::size_t npos = std::string_view::npos;

inline constexpr std::string_view kCommentStart = "<!--";
inline constexpr std::string_view kCommentEnd = "-->";
inline constexpr std::string_view kObjectStart = "<object";
inline constexpr std::string_view kCDataStart = "<![CDATA[";
inline constexpr std::string_view kSpanStart = "<!--KVO CONTROL STARTSPAN";
inline constexpr std::string_view kSpanEnd = "<!--KVO CONTROL ENDSPAN";

// White space between attributes and tags.
constexpr bool IsHtmlSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}

// An attribute as written, not decoded.
struct RawAttribute {
  std::string_view name;
  std::string_view value;
  bool hasValue = false;
};

// Reads one tag. All positions are offsets into the text.
class TagReader {
 public:
  // `at` is after the tag's name.
  TagReader(std::string_view text, std::size_t at) : text_(text), at_(at) {}

  // Reads the next attribute; false after the ">" of the tag. Also false at the end of the text,
  // where `attribute` may hold the beginning of one.
  bool Next(RawAttribute& attribute);
  // Skips the rest of the tag.
  void Skip();

  std::size_t Position() const { return at_; }
  // Whether the text ended inside the tag, which by the rules of HTML is no tag then.
  bool CutOff() const { return cutOff_; }

 private:
  std::string_view text_;
  std::size_t at_;
  bool cutOff_ = false;
};

// Returns the end of the tag name that begins at `name`.
std::size_t EndOfTagName(std::string_view text, std::size_t name);

// Whether `text` at `at` is a tag of this name: `start` is "<" or "</", and white space, "/" or ">"
// follows. The name is given in lower case.
bool IsTagAt(std::string_view text, std::size_t at, std::string_view start, std::string_view name);

// Finds the first object tag that begins in [from, to), in any context; npos when there is none.
std::size_t FindObject(std::string_view text, std::size_t from, std::size_t to);

// Returns the offset after the ">" of the comment that begins at `at`; npos when it never ends.
std::size_t EndOfComment(std::string_view text, std::size_t at);

// The characters that delimit tags and comments.
using TagPlaces = Places<'<', '>', '"', '\'', '='>;

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  enum class Kind { object, spanStart, spanEnd, end };

  // Moves to the "<" of the next "<object", "<!--KVO CONTROL STARTSPAN" or "<!--KVO CONTROL
  // ENDSPAN", or to the end. The caller then seeks past what it has read.
  Kind Next();
  // Skips one tag, comment or the like, which begins with the "<" at Position(), as Next() does.
  void SkipOne();

  std::size_t Position() const { return at_; }
  void SeekTo(std::size_t position) { at_ = position; }

  // Whether "<![CDATA[" at Position() begins a section, which only "]]>" ends. Elsewhere it begins
  // a comment that ends at the next ">".
  bool HasCData() const { return svg_ + math_ != 0; }
  // The lower-case name of the element whose raw text SkipOne() skipped with its start tag; else
  // empty.
  std::string_view RawText() const { return rawText_; }

 private:
  // Each advances at_.
  void Skip(TagPlaces& places);
  void SkipRawTextOf(std::string_view name);
  void SkipScript();

  // Handle the end of a tag whose name begins at `name`. LeaveStartTag returns whether it skipped
  // raw text after the tag.
  bool LeaveStartTag(std::size_t name);
  void LeaveEndTag(std::size_t name);
  std::size_t* DepthOf(std::string_view name);

  std::string_view text_;
  std::size_t at_ = 0;
  // How many of these elements are open.
  std::size_t svg_ = 0;
  std::size_t math_ = 0;
  std::string_view rawText_;
};

}  // namespace kvo::page
