// Golden pairs: tests/golden/CLASS/BEHAVIOUR/ holds a stored bag, the runtime text that a control
// loaded from it answers, and in many cases the bag that it stores then.
//   bag.txt, stored.txt   a line per key, "key=value"; \r \n \t \\ stand for themselves
//   runtime.html          the text, to the byte
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "common/frame/PropertyBag.h"

namespace kvo::golden {

namespace fs = std::filesystem;

inline std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline std::string Unescape(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      plain += text[i];
      continue;
    }
    const char c = text[++i];
    plain += c == 'r' ? '\r' : c == 'n' ? '\n' : c == 't' ? '\t' : c;
  }
  return plain;
}

inline std::vector<MemoryBag::Entry> ReadBag(const fs::path& path) {
  std::vector<MemoryBag::Entry> entries;
  std::ifstream file(path, std::ios::binary);
  for (std::string line; std::getline(file, line);) {
    const std::size_t equals = line.find('=');
    EXPECT_NE(equals, std::string::npos) << path << ": " << line;
    entries.emplace_back(line.substr(0, equals), Unescape(line.substr(equals + 1)));
  }
  return entries;
}

inline std::vector<fs::path> AllPairs() {
  std::vector<fs::path> pairs;
  for (const auto& entry :
       fs::recursive_directory_iterator(fs::path(KVO_SOURCE_DIR) / "tests/golden"))
    if (entry.path().filename() == "bag.txt") pairs.push_back(entry.path().parent_path());
  std::ranges::sort(pairs);
  return pairs;
}

}  // namespace kvo::golden
