// Object elements of this library in a text, wherever HTML would see them in it or not.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "document/page/Encoding.h"
#include "document/page/Scanner.h"

namespace kvo::page {

class OurElements {
 public:
  // Looks at [from, to) of a page or another text.
  OurElements(std::string_view page, std::size_t from, std::size_t to, const PageEncoding& encoding)
      : page_(page), to_(to), next_(FindObject(page, from, to)), encoding_(encoding) {}

  struct Element {
    std::size_t begin;
    std::size_t end;  // not behind the next object element, ours or not
  };
  // In their order; nothing when there are no more.
  std::optional<Element> Next();

 private:
  bool HasOurClassId(Element element) const;

  std::string_view page_;
  std::size_t to_;
  std::size_t next_;
  const PageEncoding& encoding_;
};

// The number of the saved control that an element at this place seems to belong to: that of the
// start comment in front of it. 0 when there is none.
std::size_t SpanNumberBefore(std::string_view page, std::size_t element);

// What an element says about itself when it is taken alone.
struct LoneElement {
  std::string className;  // empty when it cannot be read
  std::string id;
  std::string runtimeText;  // empty when it is broken or fails
};
// `text` begins with the element and may go on behind it.
LoneElement ReadAlone(std::string_view text, const PageEncoding& encoding);

// " N" at the start of the text, as it is written: no sign, no leading zeros, at most nine digits.
// 0 for anything else; `text` moves behind it.
std::size_t TakeNumber(std::string_view& text);

}  // namespace kvo::page
