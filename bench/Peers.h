// Well-known libraries that do what the text helpers and the page engine do, or nearly so. None of
// them gives the same bytes: they are the measure of what such work costs.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kvo::bench {

struct Peer {
  const char* name;
  // The work on a text that is made ready for the library.
  std::function<std::function<void()>(const std::string& text)> on;
};

// Markup characters into entities; of those that can be told, only the ampersand.
enum class Escaped { everything, ampersands };
std::vector<Peer> Escapers(Escaped which);
// Entities into characters.
std::vector<Peer> Unescapers();

struct Tokenizer {
  const char* name;
  // Reads a page to its end and returns how many tags there were.
  std::size_t (*read)(std::string_view page);
  // A tree needs many times the page's memory.
  bool buildsTree;
};
std::vector<Tokenizer> Tokenizers();

}  // namespace kvo::bench
