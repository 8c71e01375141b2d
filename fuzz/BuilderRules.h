// Rules that the expression builder obeys, whatever a user does in it.
#pragma once

#include <string_view>

namespace kvo {

// Reads a line and events. The line's first character says whether there is an office ("0": none);
// its rest is the expression that the dialog opens with. Events follow (format: fuzz/UserEvents.h).
// Throws std::logic_error with the broken rule.
void CheckBuilder(std::string_view story);

}  // namespace kvo
