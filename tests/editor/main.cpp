#include <gtest/gtest.h>

#include <QApplication>
#include <QStyleFactory>

#include "apps/editor/DesignView.h"
#include "host/qt/TahomaFont.h"
#include "tests/editor/Victim.h"

// German, without a display and without the desktop's own look: the same everywhere.
int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("LC_ALL", "de_DE.UTF-8");
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
