// What must hold for the dialog of expressions whatever a user does in it.
#pragma once

#include <string_view>

namespace kvo {

// The first character says whether there is an office ("0": none), the rest of its line is the
// expression that the dialog opens on; then follow events as fuzz/UserEvents.h reads them. Throws
// std::logic_error with the rule that is broken.
void CheckBuilder(std::string_view story);

}  // namespace kvo
