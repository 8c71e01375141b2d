// Random stories performed twice: without widgets and by a renderer. What they leave is the same.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "tests/stories/Performance.h"

namespace kvo {

// In so many stories, each of a user's actions is done now and then.
inline constexpr std::uint32_t kEnough = 300;
inline constexpr const char* kActions[] = {"focus", "click",  "type",   "press", "choose",
                                           "open",  "select", "double", "close", "tick"};

// How many stories tests perform, and the seed of the first one: KVO_STORIES (kEnough) and
// KVO_STORY_SEED (1) in the environment.
struct Repertoire {
  std::uint32_t first;
  std::uint32_t count;
};
Repertoire TheRepertoire();

struct Comparison {
  // The first stories that end otherwise, told with as few events as still show it; empty when
  // there is none.
  std::string difference;
  // How often the user's events, by their first word, were done in the headless performances.
  std::map<std::string, int> done;
};

Comparison CompareStories(const Repertoire& repertoire, const Renderer& renderer);

}  // namespace kvo
