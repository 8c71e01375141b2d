#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/frame/Platform.h"

namespace kvo {

// Breaks a text into lines of at most `width` twips: at line breaks, between words, and inside a
// word only where the word alone is too wide.
std::vector<std::string> TextLines(std::string_view text, FontWeight weight, int width);

}  // namespace kvo
