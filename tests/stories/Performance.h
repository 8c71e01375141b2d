// Performs a story with any kind of user, and records the pages and the bag after each event.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "fuzz/PageStory.h"
#include "tests/stories/Story.h"

namespace kvo {

// Shows forms and acts on them.
struct Renderer {
  std::function<std::unique_ptr<FormUser>(HeadlessPlatform&, Form&)> user;
  // Brings a user's form to the front and processes pending events; empty if there are none.
  std::function<void(FormUser&)> settle;
  // Describes where a form's widgets show something other than the form contains; empty if nowhere.
  std::function<std::string(FormUser&, Form&)> misshown;
};

extern const Renderer kHeadless;

struct Step {
  std::string event;  // in words, with its outcome
  std::string state;  // of the pages, the frame and the bag, line by line
};

std::vector<Step> Perform(const std::string& story, const Renderer& renderer);

}  // namespace kvo
