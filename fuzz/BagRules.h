// What must hold for every class of control whatever bag it is loaded from.
#pragma once

#include <string_view>

namespace kvo {

// A line for the class and one for each key, as fuzz/StoryBag.h reads them. Throws std::logic_error
// with the rule that is broken.
void CheckBag(std::string_view story);

}  // namespace kvo
