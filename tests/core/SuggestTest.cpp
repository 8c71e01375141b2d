#include "common/text/Suggest.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/core/ValueDefinitions.h"

namespace kvo {
namespace {

// Texts of few letters are often close to one another. Some are longer than any suggested name.
TEST(Suggest, FindsTheSameAsComparingAllCandidates) {
  std::mt19937 random(7);  // NOLINT: the same texts in each run
  const auto text = [&](std::size_t longest) {
    std::string made;
    for (std::size_t left = random() % (longest + 1); left > 0; --left)
      made += "abcABC\xC3\xA4_1"[random() % 10];
    return made;
  };
  int suggested = 0;
  for (int round = 0; round < 2'000; ++round) {
    const std::size_t longest = round % 2 == 0 ? 8 : 50;
    const std::string name = text(longest);
    std::vector<std::string> known(10);
    for (std::string& each : known) {
      each = random() % 2 == 0 ? text(longest) : name;
      for (int edits = static_cast<int>(random() % 6); edits > 0 && each.size() > 1; --edits) {
        const std::size_t at = random() % (each.size() - 1);
        if (edits % 2 == 0)
          std::swap(each[at], each[at + 1]);
        else
          each.erase(at, 1);
      }
    }
    const std::vector<std::string_view> candidates(known.begin(), known.end());
    const std::string_view found = Suggest(name, candidates);
    EXPECT_EQ(found, SuggestByDefinition(name, candidates)) << name;
    suggested += found.empty() ? 0 : 1;
  }
  EXPECT_GT(suggested, 100);
}

}  // namespace
}  // namespace kvo
