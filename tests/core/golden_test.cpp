#include <gtest/gtest.h>

#include "host/registration/classes.h"
#include "tests/core/Golden.h"

namespace kvo {
namespace {

using namespace golden;

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
