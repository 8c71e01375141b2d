// The words of a page script's lines (the format: docs/page-scripts.md).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/values/Localized.h"

namespace kvo {

// What is wrong with a line.
class ScriptTrouble : public LocalizedError {
  using LocalizedError::LocalizedError;
};

// Without the comment, if there is one. Throws ScriptTrouble.
std::vector<std::string> SplitWords(std::string_view line);

}  // namespace kvo
