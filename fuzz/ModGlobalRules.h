// What must hold for the text helpers whatever the text is.
#pragma once

#include <string_view>

namespace kvo {

// Throws std::logic_error with the name of the helper that departs from its definition.
void CheckTextHelpers(std::string_view text);

}  // namespace kvo
