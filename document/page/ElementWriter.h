// Writes the controls of a page in their one canonical form.
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
  std::string text;        // the character, or the byte, for people: "U+0081", "0xFF"
  char32_t character = 0;  // 0 for a byte
};

Unwritable NotHeld(char32_t character);

// Appends a value (UTF-8) as the inside of a quoted attribute, in the page's encoding. "&", "<",
// ">", the double quote, "-" beside another "-", CR, LF, TAB and what the encoding cannot hold
// become character references: nothing inside can end a value, a tag or a comment.
std::optional<Unwritable> AppendAttributeValue(std::string_view value, const PageEncoding& encoding,
                                               std::string& page);

// Appends a text (UTF-8) in the page's encoding, as it stands.
std::optional<Unwritable> AppendText(std::string_view text, const PageEncoding& encoding,
                                     std::string& page);

// Writes elements, one at a time: "<object classid=... id=...", attributes, params, "</object>".
class ElementWriter {
 public:
  explicit ElementWriter(const PageEncoding& encoding) : encoding_(encoding) {}

  void Begin(const ControlClass& contract, std::optional<std::string_view> id);
  // `name` in the page's encoding. All attributes come before the first param.
  void Attribute(std::string_view name, std::optional<std::string_view> value);
  void Param(std::string_view key, std::string_view value);
  void Param(std::size_t row, std::string_view value);  // of the class's bag
  void End();

  // What was written since Begin, in the page's encoding.
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

  // What is the same for every control of a class: made once, since the next control is mostly of
  // the same class.
  const ControlClass* contract_ = nullptr;
  std::string classBegin_;
  std::vector<std::string> paramBegins_;  // by row of the class's bag
  std::optional<Unwritable> failure_;
};

// The smallest number from 1 whose end comment does not occur in the text.
std::size_t SpanNumber(std::string_view text);

// The start comment up to its element, and the end comment.
std::string SpanBegin(std::size_t number);
std::string EndComment(std::size_t number);

}  // namespace kvo::page
