// The conversations of tests/pages/scripts, held with real windows.
#include <gtest/gtest.h>

#include "tests/pages/Theatre.h"
#include "tests/windows/win32/Win32User.h"

namespace kvo {
namespace {

class WindowConversation : public testing::TestWithParam<std::string> {};

TEST_P(WindowConversation, GoesAsWritten) {
  const std::string script = ReadScript(GetParam());
  ASSERT_FALSE(script.empty());
  Theatre theatre;
  theatre.stage.user = [&](Form& form) {
    return std::make_unique<Win32User>(theatre.platform, form);
  };
  const ScriptOutcome outcome = theatre.Run(script);
  if (outcome.failure)
    FAIL() << GetParam() << ".txt:" << outcome.failure->line << ": "
           << outcome.failure->message.english;
}

INSTANTIATE_TEST_SUITE_P(Scripts, WindowConversation, testing::ValuesIn(ScriptNames()),
                         [](const auto& parameter) { return parameter.param; });

TEST(Conversations, AreAllThere) { EXPECT_GE(ScriptNames().size(), 14U); }

}  // namespace
}  // namespace kvo
