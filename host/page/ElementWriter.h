// Writes the controls of a page in their one canonical form.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "host/page/Encoding.h"

namespace kvo::page {

// A character that the page cannot hold, not even as a character reference.
struct Unwritable {
  std::string text;  // the character, or the byte, for people: "U+0081", "0xFF"
};

// Appends a value (UTF-8) as the inside of a quoted attribute, in the page's encoding. "&", "<",
// ">", the double quote, "-" beside another "-", CR, LF, TAB and what the encoding cannot hold
// become character references: nothing inside can end a value, a tag or a comment.
std::optional<Unwritable> AppendAttributeValue(std::string_view value, const PageEncoding& encoding,
                                               std::string& page);

// Appends a text (UTF-8) in the page's encoding, as it stands.
std::optional<Unwritable> AppendText(std::string_view text, const PageEncoding& encoding,
                                     std::string& page);

// "<object classid=... id=...", attributes, params, "</object>".
class ElementWriter {
 public:
  ElementWriter(const PageEncoding& encoding, std::string& page)
      : encoding_(encoding), page_(page) {}

  void Begin(std::string_view className, std::optional<std::string_view> id);
  // `name` in the page's encoding. All attributes come before the first param.
  void Attribute(std::string_view name, std::optional<std::string_view> value);
  void Param(std::string_view key, std::string_view value);
  void End();

  // The first character that could not be written.
  const std::optional<Unwritable>& Failure() const { return failure_; }

 private:
  void Value(std::string_view value);
  void CloseStartTag();

  const PageEncoding& encoding_;
  std::string& page_;
  bool startTagOpen_ = false;
  std::optional<Unwritable> failure_;
};

// The smallest number from 1 whose end comment does not occur in the text.
std::size_t SpanNumber(std::string_view text);

void AppendSpanStart(std::string& page, std::size_t number);  // up to the element
void AppendSpanEnd(std::string& page, std::size_t number);
std::string EndComment(std::size_t number);

}  // namespace kvo::page
