// kvo-editor: the desktop editor for pages with design-time controls.
#include <QApplication>
#include <QCommandLineParser>
#include <QLibraryInfo>
#include <QTimer>
#include <QTranslator>

#include "apps/Version.h"
#include "apps/editor/Colors.h"
#include "apps/editor/Drafts.h"
#include "apps/editor/LocalBrowser.h"
#include "apps/editor/MainWindow.h"
#include "apps/editor/Words.h"
#include "document/page/File.h"
#include "document/shop/Shop.h"
#include "host/qt/QtPlatform.h"
#include "host/qt/QtText.h"
#include "host/qt/TahomaFont.h"
#include "host/registration/classes.h"

int main(int argc, char** argv) {
  using namespace kvo;
  page::OccupyStandardStreams();
  editor::PrepareBrowsers();
  QApplication application(argc, argv);
  QApplication::setOrganizationName("KVOPDesignObjects");
  QApplication::setApplicationName("kvo-editor");
  QApplication::setApplicationVersion(ToQt(ProgramVersion()));
  QTranslator translator;  // for Qt's own dialogs
  if (UserLanguage() == Language::german &&
      translator.load("qtbase_de", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QApplication::installTranslator(&translator);

  QCommandLineParser line;
  line.setApplicationDescription(editor::Text(editor::words::kAbout));
  line.addHelpOption();
  line.addVersionOption();
  line.addPositionalArgument("PAGE", editor::Text(editor::words::kPageArgument), "[PAGE]");
  line.process(application);

  editor::UseColors();
  LoadTahoma();
  QtPlatform platform(CreatePage);
  const PlatformScope scope(platform);
  platform.recordsets = shop::NewRecordset;
  editor::MainWindow window(platform, {editor::DraftFolder(), shop::NewConnection});
  const QStringList files = line.positionalArguments();
  window.ShowWelcome();  // until there is a page
  window.show();
  QTimer::singleShot(0, &window, [&] {
    if (!window.Work().OfferDrafts() && !files.isEmpty()) window.Work().Open(files.front());
  });
  return QApplication::exec();
}
