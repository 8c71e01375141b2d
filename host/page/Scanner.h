// Finds, byte by byte and without building a tree, what may be a control in a page: `object` start
// tags and the comments of saved spans. It reads as the tokenizer of HTML does: quoted attributes,
// comments, bogus comments, CDATA sections, and the text of `script`, `style`, `textarea` and
// `title`, in all of which nothing is found.
#pragma once

#include <cstddef>
#include <string_view>

namespace kvo::page {

// The place of what is not there.
inline constexpr std::size_t npos = std::string_view::npos;

inline constexpr std::string_view kCommentStart = "<!--";
inline constexpr std::string_view kCommentEnd = "-->";
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
  bool special = false;  // the value holds "&", ">" or bytes beyond ASCII
};

// Reads one tag. All positions are offsets into the text, which must go on with a NUL behind its
// end (as every std::string does).
class TagReader {
 public:
  // `at` is behind the tag's name.
  TagReader(std::string_view text, std::size_t at) : text_(text), at_(at) {}

  // Reads the next attribute; false behind the ">" of the tag or at the end of the text.
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

// Whether `text` at `at` is a tag of this name: `start` is "<" or "</", and white space, "/" or ">"
// follows. The name is given in lower case.
bool IsTagAt(std::string_view text, std::size_t at, std::string_view start, std::string_view name);

// The first byte at or behind `at` that is not plain inside a quoted value: a quote, "&", ">", a
// NUL or a byte beyond ASCII. A NUL must follow the text.
std::size_t EndOfPlainText(std::string_view text, std::size_t at);

// Where the comment ends whose "<!--" is at `at`: behind its ">"; npos when it never ends.
std::size_t EndOfComment(std::string_view text, std::size_t at);

class Scanner {
 public:
  // As with TagReader, a NUL follows the text.
  explicit Scanner(std::string_view text) : text_(text) {}

  enum class Kind { object, spanStart, spanEnd, end };

  // Moves on to the next "<object", "<!--KVO CONTROL STARTSPAN" or "<!--KVO CONTROL ENDSPAN", or to
  // the end. Position() is then that of its "<"; the caller goes on behind what it has read.
  Kind Next();
  // Moves over one thing of any kind, which begins with the "<" at Position(), as Next() does.
  void SkipOne();

  std::size_t Position() const { return at_; }
  void GoOn(std::size_t position) { at_ = position; }

 private:
  // Each moves on from at_.
  void SkipMarkup();
  void SkipRawText(const char* startTag);  // its name; nothing when it holds markup
  void SkipRawTextOf(std::string_view name);
  void SkipScript();
  void SkipCData();
  bool IsEndTagOf(std::size_t at, std::string_view name) const;

  std::string_view text_;
  std::size_t at_ = 0;
  bool noCDataEnd_ = false;  // there is no "]]>" ahead
};

}  // namespace kvo::page
