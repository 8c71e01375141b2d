// Random conversations with property pages, as fuzz/PageStory.h reads them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kvo {

struct Story {
  std::uint32_t seed = 0;
  std::string opening;              // the class, its pages, its bag
  std::vector<std::string> events;  // each with what belongs to it
  std::string Bytes() const;
};

// The same for a seed on every machine.
Story WriteStory(std::uint32_t seed);

}  // namespace kvo
