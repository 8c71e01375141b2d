// kvo_qt_pictures FOLDER light|dark: draws every property page in its frame, the dialog, and the
// system's dialogs. Fails if a picture is empty.
#include <QApplication>
#include <QColorDialog>
#include <QDir>
#include <QInputDialog>
#include <QMessageBox>
#include <QPixmap>
#include <QStyleFactory>
#include <QTabWidget>
#include <QTimer>
#include <QTreeView>
#include <algorithm>
#include <cstdio>

#include "host/headless/HeadlessPlatform.h"
#include "host/qt/FormDialog.h"
#include "host/qt/PropertyFrameDialog.h"
#include "host/qt/QtPlatform.h"
#include "host/qt/QtText.h"
#include "host/registration/classes.h"
#include "pages/frmExpressionBuilder.h"
#include "tests/desktop/Pictured.h"
#include "tests/forms/FakeRecordset.h"
#include "tests/support/Environment.h"

namespace kvo {
namespace {

QPalette DarkPalette() {
  const QColor window(45, 45, 48);
  QPalette palette(window);
  palette.setColor(QPalette::Base, QColor(30, 30, 30));
  palette.setColor(QPalette::AlternateBase, QColor(55, 55, 60));
  palette.setColor(QPalette::Highlight, QColor(38, 79, 120));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  for (const auto text : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, text, Qt::gray);
  return palette;
}

class Studio {
 public:
  Studio(QString folder, QString suffix) : folder_(std::move(folder)), suffix_(std::move(suffix)) {
    QDir().mkpath(folder_);
  }

  void Draw(QWidget& window, std::string_view name) {
    window.show();
    window.activateWindow();
    QApplication::setActiveWindow(&window);
    QCoreApplication::processEvents();
    const QString file = folder_ + QLatin1Char('/') + ToQt(name) + suffix_ + QLatin1String(".png");
    const QImage image = window.grab().toImage();
    // Something was drawn if not every pixel has the window's colour.
    bool drawn = false;
    for (int x = 0; x < image.width() && !drawn; ++x)
      for (int y = 0; y < image.height() && !drawn; ++y)
        drawn = image.pixelColor(x, y) != image.pixelColor(0, 0);
    if (drawn && image.save(file)) return;
    std::fprintf(stderr, "%s: the picture is empty\n", qPrintable(file));
    failed = true;
  }

  // Draws the next modal dialog, and closes it.
  void DrawNext(std::string_view name) {
    QTimer::singleShot(50, qApp, [this, name] {
      QWidget* dialog = QApplication::activeModalWidget();
      if (dialog == nullptr) return DrawNext(name);
      Draw(*dialog, name);
      dialog->close();
    });
  }

  bool failed = false;

 private:
  QString folder_;
  QString suffix_;
};

void DrawPages(Studio& studio, const ObjectRef& office) {
  for (const RegisteredPage& page : RegisteredPages()) {
    for (const RegisteredControl& registered : RegisteredControls()) {
      const ControlClass& contract = registered.contract();
      const std::vector<std::string> pages(contract.pages.begin(), contract.pages.end());
      const auto tab = std::ranges::find(pages, page.name);
      if (tab == pages.end()) continue;
      const std::shared_ptr<Control> control = MakePictured(contract, office);
      PropertyFrameDialog dialog(contract.name, {control}, pages, CreatePage, nullptr);
      dialog.findChild<QTabWidget*>()->setCurrentIndex(static_cast<int>(tab - pages.begin()));
      studio.Draw(dialog, page.name);
      // Selects a row, so that its editor is open.
      if (auto* grid = dialog.View(static_cast<std::size_t>(tab - pages.begin()))
                           .findChild<QTreeView*>(QStringLiteral("suiDesign"))) {
        constexpr int kColorRow = 4;
        constexpr int kListRow = 2;
        for (const int row : {kColorRow, kListRow}) {
          grid->setFocus();
          grid->setCurrentIndex(grid->model()->index(row, 0));
          studio.Draw(dialog, std::string(page.name) + (row == kColorRow ? "-color" : "-list"));
        }
      }
      break;
    }
  }
}

void DrawDialogs(Studio& studio, QtPlatform& platform, const ObjectRef& office) {
  frmExpressionBuilder builder;
  builder.Office = office;
  builder.Init();
  FormDialog dialog(builder, nullptr);
  studio.Draw(dialog, "frmExpressionBuilder");
  dialog.hide();
  studio.DrawNext("message");
  platform.ShowMessage(0, "Eine Meldung & ihr Text.\r\nSie hat zwei Zeilen.");
  studio.DrawNext("prompt");
  platform.InputPrompt("Bitte geben Sie einen Namen ein.", "Attribut hinzufügen...");
  studio.DrawNext("color");
  platform.ChooseColor(0x4080FF);
}

int Run(const QStringList& arguments) {
  if (arguments.size() != 3) return 2;
  const bool dark = arguments[2] == QLatin1String("dark");
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  if (dark) QApplication::setPalette(DarkPalette());
  const bool large = qEnvironmentVariable("QT_SCALE_FACTOR") == QLatin1String("2");
  Studio studio(arguments[1],
                QLatin1String(dark ? "-dark" : "") + QLatin1String(large ? "-200" : ""));
  QtPlatform platform(CreatePage);
  const PlatformScope scope(platform);
  FakeTable table;
  table.rows = {{{"ProductNo", "100"}, {"Desc1", "Tee"}, {"Desc2", "grün"}},
                {{"ProductNo", "200"}, {"Desc1", "Kanne"}, {"Desc2", ""}},
                {{"ProductNo", "300"}, {"Desc1", "Tasse"}, {"Desc2", "Ton"}}};
  platform.recordsets = [&] { return std::make_shared<FakeRecordset>(table); };
  const ObjectRef office = MakeOffice();
  DrawPages(studio, office);
  DrawDialogs(studio, platform, office);
  return studio.failed ? 1 : 0;
}

}  // namespace
}  // namespace kvo

int main(int argc, char** argv) {
  kvo::test::SetEnvironment("de_DE.UTF-8");
  const QApplication application(argc, argv);
  return kvo::Run(QApplication::arguments());
}
