// Rules that the property pages of every control obey, whatever a user does in them.
#pragma once

#include <string_view>

namespace kvo {

// Plays a story (format: fuzz/PageStory.h). Throws std::logic_error with the broken rule.
void CheckPages(std::string_view story);

}  // namespace kvo
