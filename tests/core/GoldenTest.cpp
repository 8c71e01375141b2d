#include "tests/core/Golden.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "host/registration/classes.h"

namespace kvo {
namespace {

class GoldenPair : public testing::TestWithParam<golden::Pair> {};

TEST_P(GoldenPair, IsReproducedByteForByte) {
  const golden::Pair& pair = GetParam();
  const RegisteredControl* registered = FindControlByName(pair.control);
  ASSERT_NE(registered, nullptr);
  const auto control = registered->contract().create();

  MemoryBag bag(pair.bag);
  for (const auto& [key, value] : bag.Entries())
    EXPECT_NE(registered->contract().FindKey(key), nullptr) << "unknown key: " << key;
  control->ReadProperties(bag);
  EXPECT_EQ(control->GetRuntimeText(), pair.runtime);

  MemoryBag stored;
  control->WriteProperties(stored);
  if (pair.stored) {
    EXPECT_EQ(stored.Entries(), *pair.stored);
  }
}

std::string PairName(const testing::TestParamInfo<golden::Pair>& info) {
  std::string name = info.param.control + "_" + info.param.name;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Golden, GoldenPair, testing::ValuesIn(golden::AllPairs()), PairName);

TEST(GoldenPairs, EveryClassHasSome) {
  for (const RegisteredControl& control : RegisteredControls())
    EXPECT_FALSE(golden::ReadPairs(std::string(control.contract().name)).empty())
        << control.contract().name;
}

}  // namespace
}  // namespace kvo
