// A main function of its own: runs an application with an offscreen display.
#include <gtest/gtest.h>

#include <QApplication>
#include <cstdio>
#include <string>

#include "tests/support/Environment.h"

namespace {

// Hides warnings about features that the offscreen display lacks.
void HandleMessage(QtMsgType, const QMessageLogContext&, const QString& message) {
  if (!message.startsWith(QLatin1String("This plugin does not support")))
    std::fprintf(stderr, "%s\n", qPrintable(message));
}

}  // namespace

int main(int argc, char** argv) {
  // German, unless a test requests another language.
  const std::string locale = qEnvironmentVariable("KVO_TEST_LOCALE", "de_DE.UTF-8").toStdString();
  kvo::test::SetEnvironment(locale.c_str());
  testing::InitGoogleTest(&argc, argv);
  qInstallMessageHandler(HandleMessage);
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
