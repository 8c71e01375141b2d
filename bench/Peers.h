// Well-known libraries that do what the text helpers do, or nearly so. None of them gives the same
// bytes: they are the measure of what such work costs.
#pragma once

#include <functional>
#include <string>
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

}  // namespace kvo::bench
