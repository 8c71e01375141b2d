// Golden pairs: tests/golden/CLASS/BEHAVIOUR/ holds a stored bag, the runtime text that a control
// loaded from it answers, and in many cases the bag that it stores then.
//   bag.txt, stored.txt   a line per key, "key=value"; \r \n \t \\ stand for themselves
//   runtime.html          the text, to the byte
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "host/registration/classes.h"

namespace kvo {
namespace {

namespace fs = std::filesystem;

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string Unescape(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      plain += text[i];
      continue;
    }
    const char c = text[++i];
    plain += c == 'r' ? '\r' : c == 'n' ? '\n' : c == 't' ? '\t' : c;
  }
  return plain;
}

std::vector<MemoryBag::Entry> ReadBag(const fs::path& path) {
  std::vector<MemoryBag::Entry> entries;
  std::ifstream file(path, std::ios::binary);
  for (std::string line; std::getline(file, line);) {
    const std::size_t equals = line.find('=');
    EXPECT_NE(equals, std::string::npos) << path << ": " << line;
    entries.emplace_back(line.substr(0, equals), Unescape(line.substr(equals + 1)));
  }
  return entries;
}

class GoldenPair : public testing::TestWithParam<fs::path> {};

TEST_P(GoldenPair, IsReproducedToTheByte) {
  const fs::path folder = GetParam();
  const RegisteredControl* registered = FindControlByName(folder.parent_path().filename().string());
  ASSERT_NE(registered, nullptr);
  const auto control = registered->contract().create();

  MemoryBag bag(ReadBag(folder / "bag.txt"));
  for (const auto& [key, value] : bag.Entries())
    EXPECT_NE(registered->contract().FindKey(key), nullptr) << "no such key: " << key;
  control->ReadProperties(bag);
  EXPECT_EQ(control->GetRuntimeText(), ReadFile(folder / "runtime.html"));

  MemoryBag stored;
  control->WriteProperties(stored);
  if (fs::exists(folder / "stored.txt")) {
    EXPECT_EQ(stored.Entries(), ReadBag(folder / "stored.txt"));
  }
}

std::vector<fs::path> AllPairs() {
  std::vector<fs::path> pairs;
  for (const auto& entry :
       fs::recursive_directory_iterator(fs::path(KVO_SOURCE_DIR) / "tests/golden"))
    if (entry.path().filename() == "bag.txt") pairs.push_back(entry.path().parent_path());
  std::sort(pairs.begin(), pairs.end());
  return pairs;
}

std::string PairName(const testing::TestParamInfo<fs::path>& info) {
  std::string name =
      info.param.parent_path().filename().string() + "_" + info.param.filename().string();
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Golden, GoldenPair, testing::ValuesIn(AllPairs()), PairName);

TEST(GoldenPairs, EveryClassHasSome) {
  for (const RegisteredControl& control : RegisteredControls())
    EXPECT_TRUE(fs::exists(fs::path(KVO_SOURCE_DIR) / "tests/golden" / control.contract().name))
        << control.contract().name;
}

}  // namespace
}  // namespace kvo
