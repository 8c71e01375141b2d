// Writes the controls of a page in canonical form.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/frame/Control.h"
#include "document/page/Encoding.h"

namespace kvo::page {

// A character that the page cannot hold, not even as a character reference.
struct Unwritable {
  std::string text;        // the character or byte as displayed: "U+0081", "0xFF"
  char32_t character = 0;  // 0 for a byte
};

Unwritable NotHeld(char32_t character);

// Appends a UTF-8 value for use between the quotes of an attribute, in the page's encoding. "&",
// "<", ">", the double quote, "-" beside another "-", CR, LF, TAB and characters outside the
// encoding become character references, so that nothing can end the value, the tag or a comment.
std::optional<Unwritable> AppendAttributeValue(std::string_view value, const PageEncoding& encoding,
                                               std::string& page);

// Appends a UTF-8 text in the page's encoding, without escaping.
std::optional<Unwritable> AppendText(std::string_view text, const PageEncoding& encoding,
                                     std::string& page);

// Writes one element at a time: "<object classid=... id=...", attributes, params, "</object>".
class ElementWriter {
 public:
  explicit ElementWriter(const PageEncoding& encoding) : encoding_(encoding) {}

  void Begin(const ControlClass& contract, std::optional<std::string_view> id);
  // `name` is in the page's encoding. Write all attributes before the first param.
  void Attribute(std::string_view name, std::optional<std::string_view> value);
  void Param(std::string_view key, std::string_view value);
  void Param(std::size_t row, std::string_view value);  // a row of the class's bag
  void End();

  // The text written since Begin, in the page's encoding.
  const std::string& Text() const { return text_; }
  // The first character that could not be written.
  const std::optional<Unwritable>& Failure() const { return failure_; }

 private:
  void BeginParam(std::string_view key);
  void Value(std::string_view value);
  void CloseStartTag();

  const PageEncoding& encoding_;
  std::string text_;
  bool startTagOpen_ = false;

  // The text shared by all controls of a class, cached because neighbouring controls mostly share
  // one.
  const ControlClass* contract_ = nullptr;
  std::string classBegin_;
  std::vector<std::string> paramBegins_;  // by row of the class's bag
  std::optional<Unwritable> failure_;
};

// Returns the smallest number, from 1, whose end comment does not occur in the text.
std::size_t SpanNumber(std::string_view text);

// Return the start comment up to its element, and the end comment.
std::string SpanBegin(std::size_t number);
std::string EndComment(std::size_t number);

}  // namespace kvo::page
