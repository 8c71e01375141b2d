// Takes pictures of the editor's window: kvo_editor_pictures FOLDER [dark]. The scale is Qt's own
// (QT_SCALE_FACTOR).
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QStyleFactory>
#include <iostream>

#include "host/qt/TahomaFont.h"
#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

QPalette DarkPalette() {
  QPalette palette;
  palette.setColor(QPalette::Window, QColor("#2b2b2b"));
  palette.setColor(QPalette::WindowText, QColor("#e6e6e6"));
  palette.setColor(QPalette::Base, QColor("#1e1e1e"));
  palette.setColor(QPalette::AlternateBase, QColor("#292929"));
  palette.setColor(QPalette::Text, QColor("#e6e6e6"));
  palette.setColor(QPalette::PlaceholderText, QColor("#8c8c8c"));
  palette.setColor(QPalette::Button, QColor("#383838"));
  palette.setColor(QPalette::ButtonText, QColor("#e6e6e6"));
  palette.setColor(QPalette::ToolTipBase, QColor("#383838"));
  palette.setColor(QPalette::ToolTipText, QColor("#e6e6e6"));
  palette.setColor(QPalette::Highlight, QColor("#2f7fd0"));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, QColor("#7a7a7a"));
  return palette;
}

int TakePictures(const QString& folder, const QString& suffix) {
  Desk desk;
  for (const QString name : {"newsletter.html", "office.json"}) {
    QFile file(QString(KVO_SOURCE_DIR) + "/examples/newsletter/" + name);
    if (!file.open(QIODevice::ReadOnly)) return 2;
    desk.Put(name, file.readAll().toStdString());
  }
  const auto window = desk.NewWindow();
  window->resize(1400, 860);
  const auto shoot = [&](const QString& name) {
    if (!WaitForViews(*window)) std::cerr << "the views do not follow\n";
    QTest::qWait(300);
    const QString file = folder + '/' + name + suffix + ".png";
    if (!window->grab().save(file)) std::cerr << "cannot write " << file.toStdString() << '\n';
  };
  window->Open(desk.Path("newsletter.html"));
  window->Source().GoTo(window->Page().Content().EmbeddedParts()[2].position);
  shoot("window");
  return 0;
}

}  // namespace
}  // namespace kvo::editor

int main(int argc, char** argv) {
  using namespace kvo::editor;
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  PrepareDesignView();
  QApplication application(argc, argv);
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  if (argc < 2) return 2;
  const QString folder = argv[1];
  QDir().mkpath(folder);
  const bool dark = argc > 2 && std::string(argv[2]) == "dark";
  if (dark) QApplication::setPalette(DarkPalette());
  kvo::LoadTahoma();
  QString suffix = dark ? "-dark" : "";
  if (application.devicePixelRatio() > 1) suffix += "-200";
  return TakePictures(folder, suffix);
}
