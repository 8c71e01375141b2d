// Golden pairs: tests/golden/CONTROL.txt contains a control's named cases. A case is a stored bag,
// the runtime text of a control loaded from it, and often the bag that the control then stores:
//   === name
//   key=value
//   --- runtime
//   the text in one line, none if it is empty
//   --- stored
//   key=value
// \r \n \t \\ are escapes, and \s is a blank at the end of a line; every other byte is literal.
// Empty lines separate the cases.
#pragma once

#include <filesystem>
#include <fstream>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/frame/PropertyBag.h"

namespace kvo::golden {

using Bag = std::vector<MemoryBag::Entry>;

struct Pair {
  std::string control;
  std::string name;
  Bag bag;
  std::string runtime;
  std::optional<Bag> stored;
};

inline void PrintTo(const Pair& pair, std::ostream* out) {
  *out << pair.control << '/' << pair.name;
}

inline std::filesystem::path Folder() {
  return std::filesystem::path(KVO_SOURCE_DIR) / "tests/golden";
}

inline std::string Unescape(std::string_view text) {
  constexpr std::string_view letters = "rnts\\", meant = "\r\n\t \\";
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool escape = text[i] == '\\' && i + 1 < text.size();
    const std::size_t letter = escape ? letters.find(text[i + 1]) : std::string_view::npos;
    if (escape && letter == std::string_view::npos)
      throw std::runtime_error("unknown escape: " + std::string(text));
    plain += escape ? meant[letter] : text[i];
    if (escape) ++i;
  }
  return plain;
}

inline MemoryBag::Entry ReadEntry(const std::string& line) {
  const std::size_t equals = line.find('=');
  if (equals == 0 || equals == std::string::npos) throw std::runtime_error("no key: " + line);
  return {line.substr(0, equals), Unescape(std::string_view(line).substr(equals + 1))};
}

inline std::vector<Pair> ReadPairs(const std::string& control) {
  std::ifstream file(Folder() / (control + ".txt"), std::ios::binary);
  if (!file) throw std::runtime_error("no golden pairs for " + control);
  std::vector<Pair> pairs;
  enum { bag, runtime, stored } part = bag;
  for (std::string line; std::getline(file, line);) {
    if (line.empty()) continue;
    if (line.rfind("=== ", 0) == 0) {
      pairs.push_back({control, line.substr(4), {}, {}, {}});
      part = bag;
      continue;
    }
    Pair& pair = pairs.at(pairs.size() - 1);
    if (line == "--- runtime") {
      part = runtime;
    } else if (line == "--- stored") {
      part = stored;
      pair.stored.emplace();
    } else if (part == runtime) {
      if (!pair.runtime.empty()) throw std::runtime_error("a second line of text: " + line);
      pair.runtime = Unescape(line);
    } else {
      (part == bag ? pair.bag : *pair.stored).push_back(ReadEntry(line));
    }
  }
  return pairs;
}

// Returns the pairs of all files, in no particular order.
inline std::vector<Pair> AllPairs() {
  std::vector<Pair> all;
  for (const auto& entry : std::filesystem::directory_iterator(Folder())) {
    if (entry.path().extension() != ".txt" || entry.path().stem() == "classes") continue;
    for (Pair& pair : ReadPairs(entry.path().stem().string())) all.push_back(std::move(pair));
  }
  return all;
}

}  // namespace kvo::golden
