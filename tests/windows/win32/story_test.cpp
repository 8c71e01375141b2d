// Random conversations end alike in real windows and without any.
#include <gtest/gtest.h>

#include "tests/stories/Comparison.h"
#include "tests/windows/win32/Win32User.h"

namespace kvo {
namespace {

TEST(Stories, EndInWindowsAsTheyDoWithoutAny) {
  const Renderer windows = {
      .user = [](HeadlessPlatform& platform,
                 Form& form) { return std::make_unique<Win32User>(platform, form); },
      .settle =
          [](FormUser& user) {
            dynamic_cast<Win32User&>(user).Activate();
            PumpMessages();
          },
      .misshown = {}};
  const Repertoire repertoire = TheRepertoire();
  const Comparison compared = CompareStories(repertoire, windows);
  EXPECT_TRUE(compared.difference.empty()) << compared.difference;
  if (repertoire.count < kEnough) return;
  for (const char* action : kActions) EXPECT_GT(compared.done.count(action), 0U) << action;
}

}  // namespace
}  // namespace kvo
