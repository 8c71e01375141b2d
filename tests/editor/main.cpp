#include <gtest/gtest.h>

#include <QApplication>
#include <QStyleFactory>

#include "apps/editor/DesignView.h"
#include "host/qt/TahomaFont.h"
#include "tests/editor/Victim.h"
#include "tests/support/Environment.h"

int main(int argc, char** argv) {
  kvo::test::SetEnvironment("de_DE.UTF-8");
  testing::InitGoogleTest(&argc, argv);
  kvo::editor::PrepareDesignView();
  QApplication application(argc, argv);
  QApplication::setOrganizationName("KVOPDesignObjects");
  QApplication::setApplicationName("kvo-editor-tests");
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  kvo::LoadTahoma();
  const QStringList words = QApplication::arguments();
  if (words.size() == 4 && words[1] == kvo::editor::kVictimArgument)
    return kvo::editor::RunVictim(words[2], words[3]);
  return RUN_ALL_TESTS();
}
