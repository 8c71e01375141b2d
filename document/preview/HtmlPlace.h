// Where in an HTML page a text is put, and how to write it so that it stays a text there.
#pragma once

#include <string>
#include <string_view>

#include "document/page/Encoding.h"

namespace kvo::preview {

// What a text at a place of a page may be.
enum class HtmlPlace {
  text,  // between tags, or in a title or a text area
  comment,
  name,     // inside the name of a tag or an attribute, or at the start of a declaration
  tag,      // inside a tag, where an attribute can begin
  value,    // of an attribute, in quotation marks
  bare,     // of an attribute, without quotation marks
  address,  // of href, in quotation marks
  source,   // of an attribute whose address is loaded with the page, such as src
  code,     // a script, a style, or an attribute that holds one
};

// Follows the bytes of a page, piece by piece, as the HTML tokenizer does.
class HtmlReader {
 public:
  void Read(std::string_view piece);
  // Passes a text that is put here.
  void Pass() {
    if (state_ == State::equals) state_ = State::bare;
  }
  HtmlPlace Place() const;
  // Whether tags can stand here: between tags, outside titles and the like.
  bool TakesTags() const { return state_ == State::text; }
  // Where the start tag of the body ended, in bytes read; 0 before it.
  std::size_t BodyAt() const { return bodyAt_; }
  std::size_t ReadSoFar() const { return read_; }

 private:
  enum class State {
    text,
    opened,
    declaration,
    comment,
    bogus,
    name,
    tag,
    attribute,
    equals,
    quoted,
    bare,
    raw
  };

  void ReadCharacter(char c);
  void EndTag();

  State state_ = State::text;
  char quote_ = 0;
  std::string tag_;        // the tag's name, "/" in front of an end tag's
  std::string attribute_;  // the attribute's name
  std::string value_;      // the beginning of the attribute's value
  std::string raw_;        // the element whose raw text is read
  std::string tail_;       // the latest characters of a comment or raw text
  std::size_t read_ = 0;
  std::size_t bodyAt_ = 0;
};

// Appends a UTF-8 text for a place, in the page's encoding. False, appending nothing, when the
// place takes plain words alone and this is more, or takes addresses and this one could run a
// script or load something from elsewhere.
bool AppendTextAt(HtmlPlace place, std::string_view text, const page::PageEncoding& encoding,
                  std::string& page);

// The same for a place between tags, or a value in quotation marks that is no address.
void AppendEscaped(std::string_view text, const page::PageEncoding& encoding, std::string& page);

}  // namespace kvo::preview
