// Rules that the text helpers obey, whatever the text.
#pragma once

#include <string_view>

namespace kvo {

// Throws std::logic_error with the name of the helper that differs from its definition.
void CheckTextHelpers(std::string_view text);

}  // namespace kvo
