// Performs random stories twice, without widgets and with a renderer, and compares the results.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "tests/stories/Performance.h"

namespace kvo {

// Enough stories for each of a user's actions to be done several times.
inline constexpr std::uint32_t kEnough = 300;
inline constexpr const char* kActions[] = {"focus", "click",  "type",   "press", "choose",
                                           "open",  "select", "double", "close", "tick"};

// The number of stories to perform, and the seed of the first: KVO_STORIES (default kEnough) and
// KVO_STORY_SEED (default 1) in the environment.
struct Repertoire {
  std::uint32_t first;
  std::uint32_t count;
};
Repertoire TheRepertoire();

struct Comparison {
  // The first stories with different results, reduced to the fewest events that show the
  // difference; empty if there are none.
  std::string difference;
  // How often each user action, by its first word, was done in the headless performances.
  std::map<std::string, int> done;
};

Comparison CompareStories(const Repertoire& repertoire, const Renderer& renderer);

}  // namespace kvo
