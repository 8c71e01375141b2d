// Compares runtime texts that differ only in identifiers made anew at every call.
#pragma once

#include <string_view>

namespace kvo::page {

// Whether the same control returned `old` earlier. `text` and `again` are the results of two calls
// now: where they differ in an identifier (8-4-4-4-12 hexadecimal digits), `old` may hold any
// identifier; everything else must be equal.
bool EqualButForNewGuids(std::string_view old, std::string_view text, std::string_view again);

}  // namespace kvo::page
