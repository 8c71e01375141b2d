// Checks a test as far as possible without knowing the template language.
#pragma once

#include <string_view>

namespace kvo::check {

// Finds two adjacent conditions without "&&" or "||" between them; returns where the second begins,
// or npos. A condition here is a comparison or a bracketed expression; anything else between two
// conditions joins them.
std::size_t PlaceOfMissingJoiner(std::string_view test);

}  // namespace kvo::check
