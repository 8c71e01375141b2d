// Well-known libraries that do roughly what the text helpers do. None of them produces the same
// bytes; they only show what such work costs.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace kvo::bench {

struct Peer {
  const char* name;
  // Prepares a text for the library and returns the work to time.
  std::function<std::function<void()>(const std::string& text)> on;
};

// Libraries that turn markup characters into entities, or only ampersands if they have the choice.
enum class Escaped { everything, ampersands };
std::vector<Peer> Escapers(Escaped which);
// Libraries that turn entities into characters.
std::vector<Peer> Unescapers();

}  // namespace kvo::bench
