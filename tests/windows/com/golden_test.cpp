// The golden pairs of the portable tests, through the property bag of a host.
#include "tests/core/Golden.h"

#include "tests/windows/com/Host.h"

namespace kvo::com {
namespace {

using namespace golden;

class GoldenPairs : public ModuleTest, public testing::WithParamInterface<std::string> {};

TEST_P(GoldenPairs, AreReproducedToTheByte) {
  std::size_t pairs = 0;
  for (const fs::path& folder : AllPairs()) {
    if (folder.parent_path().filename().string() != GetParam()) continue;
    ++pairs;
    SCOPED_TRACE(folder.filename().string());
    const auto control = Dll::Get().Make<IPersistPropertyBag>(GetParam());
    TestBag bag(ReadBag(folder / "bag.txt"));
    ASSERT_EQ(control->Load(&bag, nullptr), S_OK);
    const auto text = AsRuntimeText(control.get());
    Bstr runtime;
    ASSERT_EQ(text->GetRuntimeText(runtime.Receive()), S_OK);
    EXPECT_EQ(runtime.Utf8(), ReadFile(folder / "runtime.html"));

    TestBag stored;
    ASSERT_EQ(control->Save(&stored, TRUE, TRUE), S_OK);
    if (fs::exists(folder / "stored.txt")) {
      EXPECT_EQ(stored.entries, ReadBag(folder / "stored.txt"));
    }
  }
  EXPECT_GT(pairs, 0u);
}

INSTANTIATE_TEST_SUITE_P(Every, GoldenPairs, testing::ValuesIn(ControlNames()), ParameterName);

}  // namespace
}  // namespace kvo::com
