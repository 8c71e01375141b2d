// Character references ("&amp;", "&#8364;", "&#x20AC;") as HTML reads them in attribute values.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kvo::page {

// Appends the characters of the reference that `text` begins with and returns its length in bytes.
// Returns 0 and appends nothing when the "&" at the start is literal.
std::size_t AppendCharacterReference(std::string_view text, std::string& utf8);

}  // namespace kvo::page
