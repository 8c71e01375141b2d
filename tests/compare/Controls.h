// The controls of the compared pages.
#pragma once

#include <string>
#include <string_view>

#include "tests/page/PageTesting.h"

namespace kvo::compare {

// Returns a print control's element; an empty id is none.
inline std::string Print(std::string_view id, std::string_view value,
                         std::string_view format = "") {
  return "<object classid=\"progid:KVOPDesignObjects.DTCPrint\"" +
         (id.empty() ? "" : " id=\"" + std::string(id) + '"') + ">" + page::Param("value", value) +
         page::Param("format", format) + "</object>";
}

// Returns the same saved.
inline std::string SavedPrint(std::string_view id, std::string_view value,
                              std::string_view format) {
  return page::Span(Print(id, value, format), "<kv:print value=\"" + std::string(value) +
                                                  "\" format=\"" + std::string(format) + "\"/>");
}

}  // namespace kvo::compare
