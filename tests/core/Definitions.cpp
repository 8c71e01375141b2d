#include "tests/core/Definitions.h"

#include <regex>

namespace kvo {

std::string FixAmpersandsByDefinition(std::string text) {
  static const std::regex pattern("(.*?)(&)([^a]|a[^m]|am[^p]|amp[^;])(.*?)",
                                  std::regex::ECMAScript | std::regex::icase);
  while (std::regex_search(text, pattern)) text = std::regex_replace(text, pattern, "$1&amp;$3$4");
  return text;
}

}  // namespace kvo
