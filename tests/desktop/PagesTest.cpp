// Every page in a desktop's widgets.
#include <gtest/gtest.h>

#include "tests/desktop/AllForms.h"
#include "tests/desktop/DesktopUser.h"

namespace kvo {
namespace {

TEST(DesktopPages, TheTabKeyFollowsTheOrderOfDeclaration) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  for (const NamedForm& named : AllForms()) {
    SCOPED_TRACE(named.name);
    const auto user = SitDown(platform, *named.form);
    const std::vector<FormControl*> expected = TabStops(*named.form);
    ASSERT_FALSE(expected.empty());
    user->FocusByKeyboard(*expected.front());
    std::vector<const FormControl*> found = {named.form->Focused()};
    while (found.size() < expected.size()) {
      user->Press(Key::tab);
      found.push_back(named.form->Focused());
    }
    for (std::size_t at = 0; at < expected.size(); ++at) {
      ASSERT_NE(found[at], nullptr);
      EXPECT_EQ(found[at]->Name(), expected[at]->Name());
    }
  }
}

}  // namespace
}  // namespace kvo
