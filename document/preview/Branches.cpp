#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "document/preview/Template.h"

namespace kvo::preview {
namespace {

// Finds variants one by one. A variant takes, at each switch that it reaches, the form that still
// has more to show; so switches beside each other need no variants of their own, and the number of
// variants is that of the switch that needs most.
class Branches {
 public:
  explicit Branches(const std::vector<Switch>& switches)
      : switches_(switches), shown_(switches.size()), within_(switches.size()) {}

  std::vector<std::vector<Choice>> All() {
    std::vector<std::vector<Choice>> variants;
    const auto add = [&](std::vector<Choice> variant) {
      if (!ShowsMore(variant)) return false;
      Note(variant);
      variants.push_back(std::move(variant));
      return true;
    };
    while (add(Filled(std::vector<Choice>(switches_.size(), Choice::asRecord)))) {
    }
    // Equal tests may have kept a form from being reached: goes for it directly.
    for (std::size_t at = 0; at < switches_.size(); ++at) {
      for (const bool holds : {true, false}) {
        if (IsShown(at, holds)) continue;
        if (auto variant = Towards(at, holds)) add(Filled(std::move(*variant)));
      }
    }
    if (variants.empty()) variants.emplace_back(switches_.size(), Choice::asRecord);
    return variants;
  }

 private:
  bool IsShown(std::size_t at, bool holds) const { return shown_[at][holds ? 1 : 0]; }
  // The switch that decides for all with the same test.
  std::size_t Decisive(std::size_t at) const { return switches_[at].same; }

  // Counts for each form of each switch the variants that it still needs. Inner switches follow
  // outer ones.
  void Count() {
    for (std::size_t at = switches_.size(); at-- > 0;) {
      const Switch& each = switches_[at];
      std::size_t needs = 0;
      for (const bool holds : {true, false})
        needs += std::max<std::size_t>(within_[at][holds ? 1 : 0], IsShown(at, holds) ? 0 : 1);
      if (each.parent != Switch::kNoSwitch) {
        std::size_t& outer = within_[each.parent][each.parentHolds ? 1 : 0];
        outer = std::max(outer, needs);
      }
    }
  }
  std::size_t Needs(std::size_t at, bool holds) const {
    return std::max<std::size_t>(within_[at][holds ? 1 : 0], IsShown(at, holds) ? 0 : 1);
  }

  bool IsReached(std::size_t at, const std::vector<Choice>& variant) const {
    const Switch& each = switches_[at];
    return each.parent == Switch::kNoSwitch ||
           variant[each.parent] == (each.parentHolds ? Choice::holds : Choice::fails);
  }

  // Decides every switch that the variant reaches.
  std::vector<Choice> Filled(std::vector<Choice> variant) {
    std::ranges::fill(within_, std::array<std::size_t, 2>{});
    Count();
    std::vector<Choice> decided(switches_.size(), Choice::asRecord);
    for (std::size_t at = 0; at < switches_.size(); ++at)
      if (variant[at] != Choice::asRecord) decided[Decisive(at)] = variant[at];
    for (std::size_t at = 0; at < switches_.size(); ++at) {
      variant[at] = Choice::asRecord;
      if (!IsReached(at, variant)) continue;
      Choice& choice = decided[Decisive(at)];
      if (choice == Choice::asRecord)
        choice = Needs(at, true) >= Needs(at, false) ? Choice::holds : Choice::fails;
      variant[at] = choice;
    }
    return variant;
  }

  // The choices on the way to a form; nothing when equal tests contradict each other.
  std::optional<std::vector<Choice>> Towards(std::size_t at, bool holds) const {
    std::vector<std::pair<std::size_t, Choice>> way;
    for (; at != Switch::kNoSwitch; holds = switches_[at].parentHolds, at = switches_[at].parent) {
      const Choice choice = holds ? Choice::holds : Choice::fails;
      for (const auto& [other, otherChoice] : way)
        if (Decisive(other) == Decisive(at) && otherChoice != choice) return std::nullopt;
      way.emplace_back(at, choice);
    }
    std::vector<Choice> variant(switches_.size(), Choice::asRecord);
    for (const auto& [each, choice] : way) variant[each] = choice;
    return variant;
  }

  bool ShowsMore(const std::vector<Choice>& variant) const {
    for (std::size_t at = 0; at < variant.size(); ++at)
      if (variant[at] != Choice::asRecord && !IsShown(at, variant[at] == Choice::holds))
        return true;
    return false;
  }
  void Note(const std::vector<Choice>& variant) {
    for (std::size_t at = 0; at < variant.size(); ++at)
      if (variant[at] != Choice::asRecord) shown_[at][variant[at] == Choice::holds ? 1 : 0] = true;
  }

  const std::vector<Switch>& switches_;
  std::vector<std::array<bool, 2>> shown_;
  std::vector<std::array<std::size_t, 2>> within_;  // what the switches inside still need
};

}  // namespace

std::vector<std::vector<Choice>> AllBranches(const std::vector<Switch>& switches) {
  return Branches(switches).All();
}

}  // namespace kvo::preview
