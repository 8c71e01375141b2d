// Random stories about property pages, in the format of fuzz/PageStory.h.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kvo {

struct Story {
  std::uint32_t seed = 0;
  std::string opening;              // the class, its pages, its bag
  std::vector<std::string> events;  // each with its arguments
  std::string Bytes() const;
};

// Writes the same story for a seed on every machine.
Story WriteStory(std::uint32_t seed);

}  // namespace kvo
