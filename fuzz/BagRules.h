// Rules that every class of control obeys, whatever bag it is loaded from.
#pragma once

#include <string_view>

namespace kvo {

// Reads a line for the class and one for each key (format: fuzz/StoryBag.h). Throws
// std::logic_error with the broken rule.
void CheckBag(std::string_view story);

}  // namespace kvo
