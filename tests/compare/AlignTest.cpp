#include "document/compare/Align.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace kvo::compare {
namespace {

using Sequence = std::vector<std::size_t>;

TEST(Align, MatchesWhatIsCommon) {
  EXPECT_EQ(Align(Sequence{1, 2, 3, 4}, Sequence{1, 9, 3, 4}),
            (std::vector<Match>{{0, 0}, {2, 2}, {3, 3}}));
  EXPECT_EQ(Align(Sequence{}, Sequence{1}), std::vector<Match>());
}

TEST(Align, PrefersWhatOccursOnce) {
  // The repeated 7 must not pull the unique 1 and 2 apart.
  EXPECT_EQ(Align(Sequence{7, 7, 1, 7, 2}, Sequence{1, 7, 2, 7, 7}),
            (std::vector<Match>{{2, 0}, {3, 1}, {4, 2}}));
}

TEST(Align, MatchesAscendAndAreEqual) {
  std::mt19937 random(1);
  for (int round = 0; round < 2000; ++round) {
    const auto make = [&] {
      Sequence made(random() % 12);
      std::ranges::generate(made, [&] { return random() % 6; });
      return made;
    };
    const Sequence a = make();
    const Sequence b = make();
    std::size_t nextA = 0;
    std::size_t nextB = 0;
    for (const Match& match : Align(a, b)) {
      ASSERT_GE(match.a, nextA);
      ASSERT_GE(match.b, nextB);
      ASSERT_EQ(a.at(match.a), b.at(match.b));
      nextA = match.a + 1;
      nextB = match.b + 1;
    }
    ASSERT_EQ(Align(a, a).size(), a.size());
  }
}

}  // namespace
}  // namespace kvo::compare
