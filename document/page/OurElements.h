// Finds object elements of this library in a text, whether or not HTML would see them.
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
  // Searches [from, to) of a page or another text.
  OurElements(std::string_view page, std::size_t from, std::size_t to, const PageEncoding& encoding)
      : page_(page), to_(to), next_(FindObject(page, from, to)), encoding_(encoding) {}

  struct Element {
    std::size_t begin;
    std::size_t end;  // at most the start of the next object element, ours or not
  };
  // Returns the next element in order; nothing at the end.
  std::optional<Element> Next();

 private:
  bool HasOurClassId(Element element) const;

  std::string_view page_;
  std::size_t to_;
  std::size_t next_;
  const PageEncoding& encoding_;
};

// Returns the number in the start comment before an element at this place; 0 when there is none.
std::size_t SpanNumberBefore(std::string_view page, std::size_t element);

// What an element contains when read on its own.
struct LoneElement {
  std::string className;  // empty when it cannot be read
  std::string id;
  std::string runtimeText;  // empty when the control is broken or fails
};
// `text` begins with the element and may continue after it.
LoneElement ReadAlone(std::string_view text, const PageEncoding& encoding);

// Reads " N" at the start of the text: no sign, no leading zeros, at most nine digits. Returns the
// number and removes it from `text`; returns 0 for anything else.
std::size_t TakeNumber(std::string_view& text);

}  // namespace kvo::page
