// Replays every corpus input of the fuzzer, including past findings.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "fuzz/ModGlobalRules.h"

namespace kvo {
namespace {

TEST(TextHelpersCorpus, HoldsForEveryKeptInput) {
  int files = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(KVO_SOURCE_DIR "/fuzz/corpus/modGlobal")) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NO_THROW(CheckTextHelpers(text)) << entry.path();
    ++files;
  }
  EXPECT_GT(files, 0);
}

}  // namespace
}  // namespace kvo
