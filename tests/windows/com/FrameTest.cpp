// Plays the page scripts in the system's property frame, which controls can also open themselves.
#include "tests/pages/Theatre.h"
#include "tests/windows/com/ScriptPlayer.h"

namespace kvo::com {
namespace {

// Commands that the system's frame cannot follow: its selection is fixed, and its timers fire by
// themselves.
const std::vector<std::string> kBeyondFrames = {"select", "tick"};

class FrameScripts : public ModuleTest, public testing::WithParamInterface<std::string> {};

TEST_P(FrameScripts, SucceedAsWritten) {
  const Performance performance = ScriptPlayer(ReadScript(GetParam())).Play();
  for (const std::string& failure : performance.failures) ADD_FAILURE() << failure;
  for (const std::string& left : performance.leftOut) RecordProperty("left out", left);
  if (!performance.endedAt.empty()) {
    EXPECT_TRUE(std::ranges::count(kBeyondFrames, performance.endedAt))
        << "the script ended at \"" << performance.endedAt << '"';
  }
  EXPECT_GT(performance.frames, 0);
  EXPECT_GT(performance.checkedBags + performance.checkedInputs, 0);
  if (GetParam() == "propProdListPicker") {
    // The page must open its recordset with the office's own connection.
    ASSERT_FALSE(performance.opened.empty());
    const FakeTable::Opened& first = performance.opened.front();
    EXPECT_EQ(first.source, "SELECT ProductNo, Desc1, Desc2 FROM Products");
    EXPECT_EQ(first.connection, Variant(performance.connection));
    EXPECT_EQ(first.numbers, (std::vector<Variant>{2, 1, -1}));
  }
  std::printf("%d frames, %d bags, %d inputs; left out %zu; ended at \"%s\"\n", performance.frames,
              performance.checkedBags, performance.checkedInputs, performance.leftOut.size(),
              performance.endedAt.c_str());
}

INSTANTIATE_TEST_SUITE_P(Every, FrameScripts, testing::ValuesIn(ScriptNames()), ParameterName);

}  // namespace
}  // namespace kvo::com
