// The words of a page script's lines (the format: docs/page-scripts.md).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kvo {

// What is wrong with a line, in both languages.
struct ScriptTrouble {
  std::string german;
  std::string english;
};

// Without the comment, if there is one. Throws ScriptTrouble.
std::vector<std::string> SplitWords(std::string_view line);

}  // namespace kvo
