// What must hold for the property pages of every control whatever a user does in them.
#pragma once

#include <string_view>

namespace kvo {

// A story is as fuzz/PageStory.h reads it.
// Throws std::logic_error with the rule that is broken.
void CheckPages(std::string_view story);

}  // namespace kvo
