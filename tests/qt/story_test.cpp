// Random conversations end alike with real widgets and without any.
#include <gtest/gtest.h>

#include <QCoreApplication>

#include "tests/qt/Misshown.h"
#include "tests/qt/QtUser.h"
#include "tests/stories/Comparison.h"

namespace kvo {
namespace {

TEST(Stories, EndOnWidgetsAsTheyDoWithoutAny) {
  const Renderer widgets = {
      .user = [](HeadlessPlatform& platform,
                 Form& form) { return std::make_unique<QtUser>(platform, form); },
      .settle =
          [](FormUser& user) {
            dynamic_cast<QtUser&>(user).Activate();
            QCoreApplication::processEvents();
          },
      .misshown = [](FormUser& user,
                     Form& form) { return Misshown(dynamic_cast<QtUser&>(user).View(), form); }};
  const Repertoire repertoire = TheRepertoire();
  const Comparison compared = CompareStories(repertoire, widgets);
  EXPECT_TRUE(compared.difference.empty()) << compared.difference;
  if (repertoire.count < kEnough) return;
  for (const char* action : kActions) EXPECT_GT(compared.done.count(action), 0U) << action;
}

}  // namespace
}  // namespace kvo
