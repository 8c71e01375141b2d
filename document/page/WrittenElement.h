// Where the attributes and params of a control's element are in a page.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/page/Page.h"

namespace kvo::page {

// An attribute's value as written, without its quotation marks.
struct WrittenValue {
  std::size_t begin = 0;
  std::size_t end = 0;
  bool quoted = false;
};

struct WrittenAttribute {
  std::string_view name;  // in the page's encoding
  WrittenValue value;
};

struct WrittenParam {
  std::size_t begin = 0;  // of the white space before its tag
  std::size_t tag = 0;
  std::size_t end = 0;
  std::string key;
  std::optional<WrittenValue> value;
};

struct WrittenElement {
  std::vector<WrittenAttribute> attributes;  // those with a value, classid and id included
  std::size_t firstParam = 0;                // where params begin
  std::vector<WrittenParam> params;
};

// Returns the element of a control. Of a broken one, returns what can be read.
WrittenElement ReadWrittenElement(const Page& page, const FoundControl& found);

}  // namespace kvo::page
