// Reads the cases of a golden test from one file: a line "=== NAME" begins a case, and a line
// "--- PART" a part of it. Line ends at the end of a part do not count.
#pragma once

#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "document/page/File.h"

namespace kvo {

struct GoldenCase {
  std::string name;
  std::map<std::string, std::string> parts;
};

// Names the case in the output of GoogleTest.
inline void PrintTo(const GoldenCase& each, std::ostream* stream) { *stream << each.name; }

inline std::vector<GoldenCase> GoldenCases(const std::string& name) {
  std::vector<GoldenCase> cases;
  std::istringstream file(page::ReadFile(name));
  std::string* part = nullptr;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("=== ")) {
      cases.push_back({line.substr(4), {}});
      part = nullptr;
    } else if (line.starts_with("--- ")) {
      part = &cases.back().parts[line.substr(4)];
    } else if (part != nullptr) {
      *part += line + '\n';
    }
  }
  for (GoldenCase& each : cases)
    for (auto& [partName, text] : each.parts)
      while (text.ends_with('\n')) text.pop_back();
  return cases;
}

}  // namespace kvo
