// Finds, byte by byte and without building a tree, what may be a control in a page: `object` start
// tags and the comments of saved spans. It reads as the tokenizer of HTML does: quoted attributes,
// comments, bogus comments, CDATA sections inside `svg` and `math`, and the text of `script`,
// `style`, `title` and the like, in all of which nothing is found.
#pragma once

#include <cstddef>
#include <string_view>

#include "common/text/Blocks.h"

namespace kvo::page {

// The place of what is not there.
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

// An attribute as it stands, nothing decoded.
struct RawAttribute {
  std::string_view name;
  std::string_view value;
  bool hasValue = false;
};

// Reads one tag. All positions are offsets into the text.
class TagReader {
 public:
  // `at` is behind the tag's name.
  TagReader(std::string_view text, std::size_t at) : text_(text), at_(at) {}

  // Reads the next attribute; false behind the ">" of the tag or at the end of the text, where
  // `attribute` may hold the beginning of one.
  bool Next(RawAttribute& attribute);
  // Skips what is left of the tag.
  void Skip();

  std::size_t Position() const { return at_; }
  // The text ended inside the tag: by the rules of HTML there is no tag then.
  bool CutOff() const { return cutOff_; }

 private:
  std::string_view text_;
  std::size_t at_;
  bool cutOff_ = false;
};

// Where a tag's name ends that begins at `name`.
std::size_t EndOfTagName(std::string_view text, std::size_t name);

// Whether `text` at `at` is a tag of this name: `start` is "<" or "</", and white space, "/" or ">"
// follows. The name is given in lower case.
bool IsTagAt(std::string_view text, std::size_t at, std::string_view start, std::string_view name);

// The first tag of an object that begins in [from, to), wherever it stands; npos when there is
// none.
std::size_t FindObject(std::string_view text, std::size_t from, std::size_t to);

// Where the comment ends whose "<!--" is at `at`: behind its ">"; npos when it never ends.
std::size_t EndOfComment(std::string_view text, std::size_t at);

// What tells where tags and comments begin and end.
using TagPlaces = Places<'<', '>', '"', '\'', '='>;

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  enum class Kind { object, spanStart, spanEnd, end };

  // Moves on to the next "<object", "<!--KVO CONTROL STARTSPAN" or "<!--KVO CONTROL ENDSPAN", or to
  // the end. Position() is then that of its "<"; the caller goes on behind what it has read.
  Kind Next();
  // Moves over one thing of any kind, which begins with the "<" at Position(), as Next() does.
  void SkipOne();

  std::size_t Position() const { return at_; }
  void SeekTo(std::size_t position) { at_ = position; }

  // Whether "<![CDATA[" at Position() begins a section, which only "]]>" ends. Elsewhere it begins
  // a comment that ends at its first ">".
  bool HasCData() const { return svg_ + math_ != 0; }
  // The name, in lower case, of the element whose raw text SkipOne() skipped together with its
  // start tag; else empty.
  std::string_view RawText() const { return rawText_; }

 private:
  // Each moves on from at_.
  void Skip(TagPlaces& places);
  void SkipRawTextOf(std::string_view name);
  void SkipScript();

  // Behind a tag, whose name begins at `name`. A start tag answers whether it was followed by text
  // that holds no markup.
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
