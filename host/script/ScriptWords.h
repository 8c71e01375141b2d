// Splits the lines of page scripts into words (the format: docs/page-scripts.md).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/values/Localized.h"

namespace kvo {

// An error in a line of a script.
class ScriptTrouble : public LocalizedError {
  using LocalizedError::LocalizedError;
};

// Splits a line and drops its comment. Throws ScriptTrouble.
std::vector<std::string> SplitWords(std::string_view line);

}  // namespace kvo
