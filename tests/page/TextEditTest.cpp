#include "document/page/TextEdit.h"

#include <gtest/gtest.h>
#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): the POSIX part is wanted

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "document/page/UnifiedDiff.h"

namespace kvo::page {
namespace {

TEST(TextEditTest, EditsAreMadeInOrder) {
  EXPECT_EQ(Applied("abcdef", {{0, 1, "A"}, {3, 3, "-"}, {4, 6, ""}}), "Abc-d");
  EXPECT_EQ(Applied("", {{0, 0, "x"}}), "x");
}

TEST(TextEditTest, OverlappingEditsAreNotJoined) {
  TextEdits edits = {{2, 4, "x"}};
  EXPECT_FALSE(Join(edits, {{3, 5, "y"}}));
  EXPECT_FALSE(Join(edits, {{2, 4, "y"}}));
  EXPECT_FALSE(Join(edits, {{3, 3, "y"}}));
  EXPECT_EQ(edits, (TextEdits{{2, 4, "x"}}));
  EXPECT_TRUE(Join(edits, {{4, 5, "y"}}));
  EXPECT_TRUE(Join(edits, {{0, 0, "z"}, {2, 4, "x"}}));
  EXPECT_EQ(edits, (TextEdits{{0, 0, "z"}, {2, 4, "x"}, {4, 5, "y"}}));
  EXPECT_FALSE(Join(edits, {{0, 0, "other"}}));
}

TEST(UnifiedDiffTest, ShowsThreeLinesAroundAChange) {
  EXPECT_EQ(UnifiedDiff("a.html", "1\n2\n3\n4\n5\n6\n7\n8\n9\n", {{8, 9, "five"}}),
            "--- a/a.html\n+++ b/a.html\n@@ -2,7 +2,7 @@\n 2\n 3\n 4\n-5\n+five\n 6\n 7\n 8\n");
}

TEST(UnifiedDiffTest, KeepsCarriageReturnsAndTellsOfAMissingLineEnd) {
  EXPECT_EQ(UnifiedDiff("a", "1\r\n2", {{3, 4, "two"}}),
            "--- a/a\n+++ b/a\n@@ -1,2 +1,2 @@\n 1\r\n-2\n\\ No newline at end of file\n+two\n"
            "\\ No newline at end of file\n");
}

TEST(UnifiedDiffTest, IsEmptyWithoutAChange) {
  EXPECT_EQ(UnifiedDiff("a", "1\n2\n", {{0, 1, "1"}}), "");
  EXPECT_EQ(UnifiedDiff("a", "1\n2\n", {}), "");
}

#ifndef __EMSCRIPTEN__  // has no programs to start
// `patch` makes the same page of the diff as the edits do.
TEST(UnifiedDiffTest, PatchAppliesIt) {
  std::string folder = ::testing::TempDir() + "kvo-diff-XXXXXX";
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  std::mt19937 random(7);
  const auto below = [&](std::size_t n) { return static_cast<std::size_t>(random() % n); };
  std::string diffs;
  std::vector<std::string> expected;
  for (int i = 0; i < 200; ++i) {
    std::string page;
    for (std::size_t n = below(60); n > 0; --n) page += "abc\n\n"[below(5)];
    TextEdits edits;
    for (std::size_t at = below(9); at <= page.size(); at += 1 + below(20)) {
      const std::size_t end = std::min(at + below(6), page.size());
      edits.push_back({at, end, std::string(below(3), "x\n"[below(2)])});
      at = end;
    }
    const std::string name = std::to_string(i);
    std::ofstream(folder + "/" + name, std::ios::binary) << page;
    diffs += UnifiedDiff(name, page, edits);
    expected.push_back(Applied(page, edits));
  }
  std::ofstream(folder + "/all.diff", std::ios::binary) << diffs;
  const std::string command =
      "cd '" + folder + "' && patch -p1 --no-backup-if-mismatch -E --fuzz=0 -s <all.diff";
  ASSERT_EQ(std::system(command.c_str()), 0) << folder;  // NOLINT(cert-env33-c)
  for (std::size_t i = 0; i < expected.size(); ++i) {
    std::ostringstream patched;
    patched << std::ifstream(folder + "/" + std::to_string(i), std::ios::binary).rdbuf();
    EXPECT_EQ(patched.str(), expected[i]) << i;
  }
  std::filesystem::remove_all(folder);
}
#endif

}  // namespace
}  // namespace kvo::page
