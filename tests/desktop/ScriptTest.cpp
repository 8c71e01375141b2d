// Runs the scripts of tests/pages/scripts with a desktop's widgets.
#include <gtest/gtest.h>

#include "tests/desktop/DesktopUser.h"
#include "tests/pages/Theatre.h"

namespace kvo {
namespace {

class DesktopConversation : public testing::TestWithParam<std::string> {};

TEST_P(DesktopConversation, SucceedsAsWritten) {
  const std::string script = ReadScript(GetParam());
  ASSERT_FALSE(script.empty());
  Theatre theatre;
  theatre.stage.user = [&](Form& form) { return SitDown(theatre.platform, form); };
  const ScriptOutcome outcome = theatre.Run(script);
  if (outcome.failure)
    FAIL() << GetParam() << ".txt:" << outcome.failure->line << ": "
           << outcome.failure->message.english;
}

INSTANTIATE_TEST_SUITE_P(Scripts, DesktopConversation, testing::ValuesIn(ScriptNames()),
                         [](const auto& parameter) { return parameter.param; });

TEST(Conversations, AreAllThere) { EXPECT_GE(ScriptNames().size(), 14U); }

}  // namespace
}  // namespace kvo
