#include "tests/editor/Victim.h"

#include <QApplication>
#include <QTest>

#include "apps/editor/MainWindow.h"
#include "host/registration/classes.h"

namespace kvo::editor {

int RunVictim(const QString& drafts, const QString& page) {
  QtPlatform platform(CreatePage);
  const PlatformScope scope(platform);
  MainWindow window(platform, {drafts, {}});
  window.show();
  if (!window.Work().Open(page)) return 2;
  QTest::keyClicks(&window.Source(), kVictimText);
  return QApplication::exec();
}

}  // namespace kvo::editor
