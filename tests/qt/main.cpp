// The tests' own main: an application on a screen that nobody sees.
#include <gtest/gtest.h>

#include <QApplication>
#include <cstdio>
#include <string>

#include "tests/support/Environment.h"

namespace {

// What a screen that nobody sees cannot do is nothing to read about.
void HandleMessage(QtMsgType, const QMessageLogContext&, const QString& message) {
  if (!message.startsWith(QLatin1String("This plugin does not support")))
    std::fprintf(stderr, "%s\n", qPrintable(message));
}

}  // namespace

int main(int argc, char** argv) {
  // German, unless a test asks for another language.
  const std::string locale = qEnvironmentVariable("KVO_TEST_LOCALE", "de_DE.UTF-8").toStdString();
  kvo::test::SetEnvironment(locale.c_str());
  testing::InitGoogleTest(&argc, argv);
  qInstallMessageHandler(HandleMessage);
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
