// Tests the golden pairs of the portable tests through a host's property bag.
#include "tests/core/Golden.h"

#include "tests/windows/com/Host.h"

namespace kvo::com {
namespace {

class GoldenPairs : public ModuleTest, public testing::WithParamInterface<std::string> {};

TEST_P(GoldenPairs, AreReproducedByteForByte) {
  const auto pairs = golden::ReadPairs(GetParam());
  EXPECT_FALSE(pairs.empty());
  for (const golden::Pair& pair : pairs) {
    SCOPED_TRACE(pair.name);
    const auto control = Dll::Get().Make<IPersistPropertyBag>(GetParam());
    TestBag bag(pair.bag);
    ASSERT_EQ(control->Load(&bag, nullptr), S_OK);
    const auto text = AsRuntimeText(control.get());
    Bstr runtime;
    ASSERT_EQ(text->GetRuntimeText(runtime.Receive()), S_OK);
    EXPECT_EQ(runtime.Utf8(), pair.runtime);

    TestBag stored;
    ASSERT_EQ(control->Save(&stored, TRUE, TRUE), S_OK);
    if (pair.stored) {
      EXPECT_EQ(stored.entries, *pair.stored);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Every, GoldenPairs, testing::ValuesIn(ControlNames()), ParameterName);

}  // namespace
}  // namespace kvo::com
