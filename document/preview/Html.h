// Writes the markup that the preview itself adds to a page.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "document/preview/HtmlPlace.h"

namespace kvo::preview {

class Html {
 public:
  Html(std::string& page, const page::PageEncoding& encoding) : page_(page), encoding_(encoding) {}

  using Attributes = std::initializer_list<std::pair<std::string_view, std::string_view>>;
  // Leaves out attributes without a value.
  Html& Open(std::string_view element, Attributes attributes = {}) {
    page_.append("<").append(element);
    for (const auto& [name, value] : attributes)
      if (!value.empty()) Attribute(name, value);
    page_ += '>';
    return *this;
  }
  Html& Close(std::string_view element) {
    page_.append("</").append(element).append(">");
    return *this;
  }
  Html& Text(std::string_view text) {
    AppendEscaped(text, encoding_, page_);
    return *this;
  }
  // A part of a tag that is written piece by piece.
  void Attribute(std::string_view name, std::string_view value) {
    page_.append(" ").append(name).append("=\"");
    AppendEscaped(value, encoding_, page_);
    page_ += '"';
  }

 private:
  std::string& page_;
  const page::PageEncoding& encoding_;
};

}  // namespace kvo::preview
