#include <gtest/gtest.h>

#include <QApplication>
#include <QStyleFactory>
#include <cstdio>
#include <cstdlib>

#include "apps/editor/LocalBrowser.h"
#include "host/qt/TahomaFont.h"
#include "tests/editor/Victim.h"
#include "tests/support/Environment.h"

namespace {

// Drops what the offscreen platform says of every window, so that failures can be found in the log.
void Print(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  if (text.startsWith("This plugin does not support ")) return;
  std::fprintf(stderr, "%s\n", qFormatLogMessage(type, context, text).toLocal8Bit().constData());
  if (type == QtFatalMsg) std::abort();
}

}  // namespace

int main(int argc, char** argv) {
  qInstallMessageHandler(Print);
  kvo::test::SetEnvironment("de_DE.UTF-8");
  testing::InitGoogleTest(&argc, argv);
  kvo::editor::PrepareBrowsers();
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
