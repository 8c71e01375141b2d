// Character references ("&amp;", "&#8364;", "&#x20AC;") as HTML reads them in attribute values.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kvo::page {

// `text` begins with "&". Appends the characters of the reference there and returns its length in
// bytes; 0, with nothing appended, when the "&" stands for itself.
std::size_t AppendCharacterReference(std::string_view text, std::string& utf8);

}  // namespace kvo::page
