// A story performed by some user, and what stood on the pages and in the bag after each event.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "fuzz/PageStory.h"
#include "tests/stories/Story.h"

namespace kvo {

// Who shows forms and acts on them.
struct Renderer {
  std::function<std::unique_ptr<FormUser>(HeadlessPlatform&, Form&)> user;
  // Brings a user's form to the front and lets what waits happen; empty where nothing waits.
  std::function<void(FormUser&)> settle;
  // In what a form's widgets show something else than the form holds; nothing when in nothing.
  std::function<std::string(FormUser&, Form&)> misshown;
};

extern const Renderer kHeadless;

struct Step {
  std::string event;  // in words, with what became of it
  std::string state;  // of the pages, the frame and the bag, line by line
};

std::vector<Step> Perform(const std::string& story, const Renderer& renderer);

}  // namespace kvo
