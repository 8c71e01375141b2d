// Finds extended regular expressions (POSIX). The standard library's take half a minute to compile
// under the sanitizers.
#pragma once

#include <regex.h>

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

namespace kvo::test {

// Each match with its groups, the whole match first. "^" and "$" are the text's beginning and end.
inline std::vector<std::vector<std::string>> Matches(const std::string& text,
                                                     const std::string& expression) {
  regex_t pattern;
  if (regcomp(&pattern, expression.c_str(), REG_EXTENDED) != 0)
    throw std::invalid_argument(expression);
  std::vector<std::vector<std::string>> matches;
  std::array<regmatch_t, 4> groups{};
  const char* at = text.c_str();
  for (int flags = 0; regexec(&pattern, at, groups.size(), groups.data(), flags) == 0;
       flags = REG_NOTBOL) {
    auto& match = matches.emplace_back();
    for (const regmatch_t& group : groups)
      match.push_back(group.rm_so < 0 ? std::string()
                                      : std::string(at + group.rm_so, at + group.rm_eo));
    at += groups[0].rm_eo;
  }
  regfree(&pattern);
  return matches;
}

}  // namespace kvo::test
