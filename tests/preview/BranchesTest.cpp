// The fewest renderings that show both forms of every switch.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "document/preview/Template.h"

namespace kvo::preview {
namespace {

constexpr std::size_t kNone = Switch::kNoSwitch;

std::vector<Switch> Switches(std::initializer_list<std::pair<std::size_t, bool>> parents) {
  std::vector<Switch> switches;
  for (const auto& [parent, holds] : parents) {
    Switch& each = switches.emplace_back();
    each.parent = parent;
    each.parentHolds = holds;
    each.same = switches.size() - 1;
  }
  return switches;
}

using Forms = std::set<std::pair<std::size_t, bool>>;

// The forms that a variant shows.
Forms Shown(const std::vector<Switch>& switches, const std::vector<Choice>& variant) {
  Forms shown;
  for (std::size_t at = 0; at < switches.size(); ++at) {
    const Switch& each = switches[at];
    const bool reached = each.parent == kNone || shown.contains({each.parent, each.parentHolds});
    if (reached && variant[at] != Choice::asRecord) shown.emplace(at, variant[at] == Choice::holds);
  }
  return shown;
}
Forms Shown(const std::vector<Switch>& switches, const std::vector<std::vector<Choice>>& variants) {
  Forms shown;
  for (const auto& variant : variants) shown.merge(Shown(switches, variant));
  return shown;
}

TEST(BranchesTest, NeedsOneVariantWithoutSwitches) { EXPECT_EQ(AllBranches({}).size(), 1U); }

TEST(BranchesTest, ShowsSwitchesBesideEachOtherAtOnce) {
  const auto switches = Switches({{kNone, false}, {kNone, false}, {kNone, false}});
  const auto variants = AllBranches(switches);
  EXPECT_EQ(variants.size(), 2U);
  EXPECT_EQ(Shown(switches, variants).size(), 6U);
}

TEST(BranchesTest, GoesIntoInnerSwitches) {
  const auto switches = Switches({{kNone, false}, {0, true}, {0, false}, {2, true}});
  const auto variants = AllBranches(switches);
  EXPECT_EQ(Shown(switches, variants).size(), 8U);
  EXPECT_EQ(variants.size(), 5U);
}

TEST(BranchesTest, DecidesEqualTestsAlike) {
  auto switches = Switches({{kNone, false}, {kNone, false}, {0, true}});
  switches[1].same = 0;
  switches[2].same = 0;
  const auto variants = AllBranches(switches);
  EXPECT_EQ(variants.size(), 2U);
  // The inner one never fails where the outer one holds.
  const Forms wanted = {{0, true}, {0, false}, {1, true}, {1, false}, {2, true}};
  EXPECT_EQ(Shown(switches, variants), wanted);
  for (const auto& variant : variants) EXPECT_EQ(variant[0], variant[1]);
}

// The number of variants that a form needs with all that is in it.
std::size_t Needs(const std::vector<Switch>& switches, std::size_t at) {
  std::size_t sum = 0;
  for (const bool holds : {true, false}) {
    std::size_t most = 1;
    for (std::size_t inner = at + 1; inner < switches.size(); ++inner)
      if (switches[inner].parent == at && switches[inner].parentHolds == holds)
        most = std::max(most, Needs(switches, inner));
    sum += most;
  }
  return sum;
}

TEST(BranchesTest, IsAsSmallAsItCanBe) {
  std::mt19937 random(7);
  for (int round = 0; round < 2000; ++round) {
    std::vector<Switch> switches(1 + random() % 12);
    std::size_t wanted = 0;
    for (std::size_t at = 0; at < switches.size(); ++at) {
      switches[at].same = at;
      if (at > 0 && random() % 3 != 0) switches[at].parent = random() % at;
      switches[at].parentHolds = random() % 2 == 0;
    }
    for (std::size_t at = 0; at < switches.size(); ++at)
      if (switches[at].parent == kNone) wanted = std::max(wanted, Needs(switches, at));
    const auto variants = AllBranches(switches);
    ASSERT_EQ(Shown(switches, variants).size(), switches.size() * 2);
    ASSERT_EQ(variants.size(), wanted);
  }
}

// With equal tests: every form that any consistent choice shows is shown.
TEST(BranchesTest, ReachesAllThatCanBeReached) {
  std::mt19937 random(11);
  for (int round = 0; round < 500; ++round) {
    std::vector<Switch> switches(1 + random() % 7);
    for (std::size_t at = 0; at < switches.size(); ++at) {
      switches[at].same = at;
      if (at > 0 && random() % 2 == 0) switches[at].same = switches[random() % at].same;
      if (at > 0 && random() % 3 != 0) switches[at].parent = random() % at;
      switches[at].parentHolds = random() % 2 == 0;
    }
    Forms possible;
    for (unsigned choices = 0; choices < 1U << switches.size(); ++choices) {
      std::vector<Choice> variant;
      for (const Switch& each : switches)
        variant.push_back((choices >> each.same & 1U) != 0 ? Choice::holds : Choice::fails);
      possible.merge(Shown(switches, variant));
    }
    const auto variants = AllBranches(switches);
    ASSERT_EQ(Shown(switches, variants), possible);
    for (const auto& variant : variants) {
      std::vector<Choice> decided(switches.size(), Choice::asRecord);
      for (std::size_t at = 0; at < switches.size(); ++at) {
        if (variant[at] == Choice::asRecord) continue;
        Choice& before = decided[switches[at].same];
        ASSERT_TRUE(before == Choice::asRecord || before == variant[at]);
        before = variant[at];
      }
    }
  }
}

}  // namespace
}  // namespace kvo::preview
