// Character references ("&amp;", "&#8364;", "&#x20AC;") as HTML reads them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kvo::page {

// In the values of attributes, as in an address with "&copy=1", a name without its semicolon is no
// reference when a letter, a digit or "=" follows.
enum class ReferenceIn { value, text };

// Appends the characters of the reference that `text` begins with and returns its length in bytes.
// Returns 0 and appends nothing when the "&" at the start is literal.
std::size_t AppendCharacterReference(std::string_view text, std::string& utf8,
                                     ReferenceIn place = ReferenceIn::value);

}  // namespace kvo::page
