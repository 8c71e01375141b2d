#include "tests/stories/Comparison.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>

namespace kvo {
namespace {

std::uint32_t FromEnvironment(const char* name, std::uint32_t otherwise) {
  const char* text = std::getenv(name);
  return text == nullptr ? otherwise : static_cast<std::uint32_t>(std::strtoul(text, nullptr, 10));
}

struct Performances {
  std::vector<Step> headless;
  std::vector<Step> rendered;

  Performances(const Story& story, const Renderer& renderer)
      : headless(Perform(story.Bytes(), kHeadless)), rendered(Perform(story.Bytes(), renderer)) {}

  // Returns the first step in which they differ; the number of steps if they agree.
  std::size_t Parting() const {
    const auto same = [](const Step& a, const Step& b) {
      return a.event == b.event && a.state == b.state;
    };
    return static_cast<std::size_t>(std::ranges::mismatch(headless, rendered, same).in1 -
                                    headless.begin());
  }
  bool Agree() const { return headless.size() == rendered.size() && Parting() == headless.size(); }
};

// Removes all events that the difference does not need.
Story Shrink(Story story, const Renderer& renderer) {
  for (std::size_t part = std::max<std::size_t>(story.events.size() / 2, 1);; part /= 2) {
    for (std::size_t at = 0; at < story.events.size();) {
      Story less = story;
      const auto begin = less.events.begin() + static_cast<std::ptrdiff_t>(at);
      const std::size_t end = std::min(at + part, story.events.size());
      less.events.erase(begin, less.events.begin() + static_cast<std::ptrdiff_t>(end));
      if (Performances(less, renderer).Agree())
        at += part;
      else
        story = std::move(less);
    }
    if (part == 1) return story;
  }
}

std::string Escaped(const std::string& bytes) {
  std::string escaped;
  for (const char byte : bytes) {
    if (byte == '\n')
      escaped += "\\n";
    else if (byte == '\\')
      escaped += "\\\\";
    else
      escaped += byte;
  }
  return escaped;
}

void TellLines(std::ostream& out, const std::string& headless, const std::string& rendered) {
  std::istringstream expected(headless);
  std::istringstream found(rendered);
  constexpr int kMost = 6;
  int told = 0;
  for (;;) {
    std::string one;
    std::string other;
    const bool more = static_cast<bool>(std::getline(expected, one));
    const bool moreFound = static_cast<bool>(std::getline(found, other));
    if ((!more && !moreFound) || told == kMost) return;
    if (one == other) continue;
    out << "    headless: " << one << "\n    rendered: " << other << '\n';
    ++told;
  }
}

// Counts the actions of a step that were done, by their first word.
void Count(const std::string& event, std::map<std::string, int>& done) {
  if (!event.ends_with("; done")) return;
  for (std::size_t at = 0, end = 0; (end = event.find("; ", at)) != std::string::npos; at = end + 2)
    ++done[event.substr(at, event.find(' ', at) - at)];
}

std::string Tell(const Story& story, const Renderer& renderer) {
  const Performances both(story, renderer);
  const std::size_t parting = both.Parting();
  std::ostringstream out;
  out << "Story " << story.seed << " ends differently (KVO_STORY_SEED=" << story.seed
      << " KVO_STORIES=1 repeats it). The fewest events that show it:\n";
  for (std::size_t at = 0; at < std::min(parting, both.headless.size()); ++at)
    out << "  " << both.headless[at].event << '\n';
  const Step none{"(it is over)", {}};
  const Step& headless = parting < both.headless.size() ? both.headless[parting] : none;
  const Step& rendered = parting < both.rendered.size() ? both.rendered[parting] : none;
  out << "  " << headless.event << '\n';
  if (headless.event != rendered.event) out << "  rendered: " << rendered.event << '\n';
  TellLines(out, headless.state, rendered.state);
  out << "  as bytes: " << Escaped(story.Bytes()) << '\n';
  return out.str();
}

}  // namespace

Repertoire TheRepertoire() {
  return {FromEnvironment("KVO_STORY_SEED", 1), FromEnvironment("KVO_STORIES", kEnough)};
}

Comparison CompareStories(const Repertoire& repertoire, const Renderer& renderer) {
  constexpr int kMostDifferences = 3;
  int differences = 0;
  Comparison comparison;
  for (std::uint32_t seed = repertoire.first; seed - repertoire.first < repertoire.count; ++seed) {
    const Story story = WriteStory(seed);
    const Performances both(story, renderer);
    if (!both.Agree()) {
      comparison.difference += Tell(Shrink(story, renderer), renderer);
      if (++differences == kMostDifferences) return comparison;
    }
    for (const Step& step : both.headless) Count(step.event, comparison.done);
  }
  return comparison;
}

}  // namespace kvo
