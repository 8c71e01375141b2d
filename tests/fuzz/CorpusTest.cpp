// Replays every corpus input of the fuzzers, including past findings, against the rules of its
// subject.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <string>

#include "fuzz/AdoptRules.h"
#include "fuzz/BagRules.h"
#include "fuzz/BuilderRules.h"
#include "fuzz/CompareRules.h"
#include "fuzz/LanguageRules.h"
#include "fuzz/OfficeRules.h"
#include "fuzz/PagesRules.h"
#include "fuzz/PreviewRules.h"
#include "fuzz/UsesRules.h"

namespace kvo {
namespace {

struct Subject {
  const char* name;  // of its corpus folder
  void (*check)(std::string_view input);
};
void PrintTo(const Subject& subject, std::ostream* out) { *out << subject.name; }

class Corpus : public testing::TestWithParam<Subject> {};

TEST_P(Corpus, KeepsEveryRule) {
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KVO_SOURCE_DIR "/fuzz/corpus/" +
                                                               std::string(GetParam().name))) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string input{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NO_THROW(GetParam().check(input)) << entry.path();
    ++files;
  }
  EXPECT_GT(files, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Fuzz, Corpus,
    testing::Values(Subject{"adopt", adopt::CheckAdopt}, Subject{"bag", CheckBag},
                    Subject{"builder", CheckBuilder}, Subject{"compare", compare::CheckCompare},
                    Subject{"language", language::CheckLanguage},
                    Subject{"office", office::CheckOffice}, Subject{"pages", CheckPages},
                    Subject{"preview", preview::CheckPreview}, Subject{"uses", uses::CheckUses}),
    [](const auto& subject) { return std::string(subject.param.name); });

}  // namespace
}  // namespace kvo
