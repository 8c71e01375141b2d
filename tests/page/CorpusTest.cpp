// Replays the fuzzer's past findings, and the pages it started from.
#include <filesystem>
#include <fstream>
#include <sstream>

#include "PageTesting.h"
#include "fuzz/PageRules.h"
#include "fuzz/ScannerRules.h"

namespace kvo::page {
namespace {

TEST(PageCorpus, KeepsEveryRule) {
  int files = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(KVO_SOURCE_DIR "/fuzz/corpus/page")) {
    std::ifstream file(entry.path(), std::ios::binary);
    std::ostringstream page;
    page << file.rdbuf();
    EXPECT_EQ(BrokenRule(page.str()), "") << entry.path();
    EXPECT_EQ(ScannerDifference(page.str()), "") << entry.path();
    ++files;
  }
  EXPECT_GE(files, 1);
}

}  // namespace
}  // namespace kvo::page
