// What can be told of a test without knowing the template language.
#pragma once

#include <string_view>

namespace kvo::check {

// Where the second of two conditions begins that stand side by side with no "&&" or "||" between
// them; npos when there is no such place. A condition is a comparison here, or brackets; whatever
// else stands between two of them joins them.
std::size_t PlaceOfMissingJoiner(std::string_view test);

}  // namespace kvo::check
