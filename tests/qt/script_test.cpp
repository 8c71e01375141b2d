// The conversations of tests/pages/scripts, held with real widgets.
#include <gtest/gtest.h>

#include "tests/pages/Theatre.h"
#include "tests/qt/QtUser.h"

namespace kvo {
namespace {

class WidgetConversation : public testing::TestWithParam<std::string> {};

TEST_P(WidgetConversation, GoesAsWritten) {
  const std::string script = ReadScript(GetParam());
  ASSERT_FALSE(script.empty());
  Theatre theatre;
  theatre.stage.user = [&](Form& form) { return std::make_unique<QtUser>(theatre.platform, form); };
  const ScriptOutcome outcome = theatre.Run(script);
  if (outcome.failure)
    FAIL() << GetParam() << ".txt:" << outcome.failure->line << ": "
           << outcome.failure->message.english;
}

INSTANTIATE_TEST_SUITE_P(Scripts, WidgetConversation, testing::ValuesIn(ScriptNames()),
                         [](const auto& parameter) { return parameter.param; });

}  // namespace
}  // namespace kvo
