#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/frame/Platform.h"

namespace kvo {

// A text as it is set into lines of at most `width` twips: broken between words, at line breaks,
// and inside a word only where the word alone is too wide.
std::vector<std::string> TextLines(std::string_view text, FontWeight weight, int width);

}  // namespace kvo
