// Random stories have the same result with a desktop's widgets and without.
#include <gtest/gtest.h>

#include "tests/desktop/DesktopUser.h"
#include "tests/stories/Comparison.h"

namespace kvo {
namespace {

TEST(Stories, EndTheSameWithAndWithoutWidgets) {
  const Renderer widgets = {
      .user = [](HeadlessPlatform& platform, Form& form) -> std::unique_ptr<FormUser> {
        return SitDown(platform, form);
      },
      .settle =
          [](FormUser& user) {
            auto& sitting = dynamic_cast<DesktopUser&>(user);
            sitting.Activate();
            sitting.Settle();
          },
      .misshown = [](FormUser& user,
                     Form& form) { return Misshown(dynamic_cast<DesktopUser&>(user), form); }};
  const Repertoire repertoire = TheRepertoire();
  const Comparison compared = CompareStories(repertoire, widgets);
  EXPECT_TRUE(compared.difference.empty()) << compared.difference;
  if (repertoire.count < kEnough) return;
  for (const char* action : kActions) EXPECT_GT(compared.done.count(action), 0U) << action;
}

}  // namespace
}  // namespace kvo
