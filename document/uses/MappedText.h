// A text decoded from the bytes of a page, with the place of each character in the page.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "document/page/Encoding.h"

namespace kvo::uses {

class MappedText {
 public:
  // Decodes the raw value of an attribute that begins at `at` in the page. Keeps invalid bytes.
  MappedText(std::string_view value, std::size_t at, const page::PageEncoding& encoding);

  // Decodes markup tokens ("kv:@lt;").
  void DecodeTokens();
  // Removes the CDATA markers, as controls do that encode the text into tokens.
  void RemoveCData();

  const std::string& Text() const { return text_; }
  // The offset in the page of a byte of the text, or of its end.
  std::size_t PlaceOf(std::size_t byte) const {
    return places_.empty() ? at_ + byte : places_[byte];
  }

 private:
  // Replaces parts of the text. `next` gets what remains from an offset on; it returns the length
  // of the part at its start and sets the replacement, or returns 0.
  template <class Next>
  void Replace(std::string_view mark, Next next);

  std::string text_;
  std::size_t at_;
  std::vector<std::size_t> places_;  // of each byte and of the end; empty when they are the page's
};

}  // namespace kvo::uses
