// Pages designed to be slow to read, or to be read wrongly.
#include "PageTesting.h"
#include "fuzz/HostilePages.h"
#include "fuzz/PageRules.h"

namespace kvo::page {

void PrintTo(const HostilePage& page, std::ostream* out) { *out << page.name; }

namespace {

class Hostile : public PageTest, public ::testing::WithParamInterface<HostilePage> {};

TEST_P(Hostile, KeepsEveryRule) { EXPECT_EQ(BrokenRule(GetParam().of(200)), ""); }

INSTANTIATE_TEST_SUITE_P(Page, Hostile, ::testing::ValuesIn(kHostilePages),
                         [](const auto& test) { return std::string(test.param.name); });

// Pages without controls, so every byte is kept. Rereading the rest for each part would take hours
// for any of them.
using Large = PageTest;

std::string Times(int count, const std::string& part) { return hostile::Times(count, part); }

TEST_F(Large, MegabytesOfUnclosedObjectsAreKept) {
  const std::string page = Times(100'000, "<object>");
  EXPECT_TRUE(Saved(page) == page);
}

TEST_F(Large, MegabytesOfAnglesAreKept) {
  const std::string page(1 << 20, '<');
  EXPECT_TRUE(Saved(page) == page);
}

TEST_F(Large, MegabytesOfUnclosedCommentsAreKept) {
  const std::string page = Times(500'000, "<!--");
  EXPECT_TRUE(Saved(page) == page);
}

TEST_F(Large, MegabytesOfUnclosedQuotesAreKept) {
  const std::string page = Times(200'000, "<a title=\"<a title='");
  EXPECT_TRUE(Saved(page) == page);
}

TEST_F(Large, UnclosedControlsAreEachReportedAndNothingIsWritten) {
  const std::string page = Times(10'000, hostile::kPrint);
  EXPECT_EQ(Saved(page), "(not saved)");
  EXPECT_EQ(problems.size(), 10'000U);
}

TEST_F(Large, UnclosedControlsFollowedByTextAreEachReported) {
  const std::string page = Times(10'000, hostile::kPrint + "text");
  EXPECT_EQ(Saved(page), "(not saved)");
  EXPECT_EQ(problems.size(), 20'000U);
}

}  // namespace
}  // namespace kvo::page
