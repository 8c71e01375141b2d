// The tests' own main: an application on a screen that nobody sees.
#include <gtest/gtest.h>

#include <QApplication>
#include <cstdio>

namespace {

// What a screen that nobody sees cannot do is nothing to read about.
void HandleMessage(QtMsgType, const QMessageLogContext&, const QString& message) {
  if (!message.startsWith(QLatin1String("This plugin does not support")))
    std::fprintf(stderr, "%s\n", qPrintable(message));
}

}  // namespace

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  // German, unless a test asks for another language.
  qputenv("LC_ALL", qEnvironmentVariable("KVO_TEST_LOCALE", "de_DE.UTF-8").toUtf8());
  testing::InitGoogleTest(&argc, argv);
  qInstallMessageHandler(HandleMessage);
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
