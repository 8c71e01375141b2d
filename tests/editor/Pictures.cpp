// Takes pictures of the editor's window: kvo_editor_pictures FOLDER [dark]. Qt sets the scale
// (QT_SCALE_FACTOR).
#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QInputDialog>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QStyleFactory>
#include <QToolButton>
#include <iostream>

#include "apps/editor/Colors.h"
#include "apps/editor/FindBar.h"
#include "apps/editor/LocalBrowser.h"
#include "apps/editor/PreviewPanel.h"
#include "apps/editor/PreviewView.h"
#include "apps/editor/Previewing.h"
#include "apps/editor/TakeOver.h"
#include "apps/editor/TextDialog.h"
#include "apps/editor/UsesPanel.h"
#include "apps/editor/Views.h"
#include "apps/editor/WhereUsed.h"
#include "document/shop/Shop.h"
#include "host/qt/TahomaFont.h"
#include "tests/editor/EditorTest.h"
#include "tests/shop/support/SqliteFile.h"
#include "tests/support/Environment.h"

namespace kvo::editor {
namespace {

// Takes pictures one after the other, each with a name.
class Studio {
 public:
  Studio(QString folder, QString suffix) : folder_(std::move(folder)), suffix_(std::move(suffix)) {
    for (const QString name : {"newsletter.html", "office.json", "preview.json", "roestkurs.jpg"})
      desk_.Put(name, Example("newsletter", name));
    CopyFolder("templates", "vorlagen");
    CopyFolder("takeover", "alt");
    shop::SqliteFile shop;
    shop.Run(Example("newsletter", "shop.sql"));
    shop.Close();
    QFile::copy(QString::fromStdString(shop.Path().string()), desk_.Path("shop.db"));
    desk_.connections = shop::NewConnection;
    desk_.platform.recordsets = shop::NewRecordset;
    window_ = desk_.NewWindow();
    window_->resize(1400, 860);
  }

  bool TakeAll() {
    if (!window_->Work().Open(desk_.Path("newsletter.html"))) return false;
    QSettings().setValue("recent", QStringList{"/home/anna/Newsletter/herbst.kvo.html",
                                               "/home/anna/Newsletter/sommerfest.kvo.html",
                                               "/home/anna/Bestellungen/versand.kvo.html"});
    window_->ShowWelcome();
    Shoot("welcome");
    if (!window_->Work().Open(desk_.Path("newsletter.html"))) return false;
    GoTo("Anrede");
    Shoot("window");
    window_->Middle().Arrange(Views::Layout::beside);
    Click("360 Pixel");
    Shoot("phone");
    Click("An die Breite");
    window_->Middle().Arrange(Views::Layout::below);
    ShootDialog("pages", [&] { window_->Controls().OpenPages(Position(), false); });
    ShootDialog("text", [&] {
      EditHtml("Wenn erfüllt", ToText(window_->Controls().Load(Position())->Get("OnTrue")),
               FieldTools(window_->Work().Office()->Described()), window_.get());
    });
    TakePreviews();
    window_->Finder().Open(true);
    QTest::keyClicks(window_->Finder().findChild<QLineEdit*>("find"), "td");
    window_->Finder().Step(false);
    Shoot("find");
    window_->Finder().hide();
    TakeUses();
    ShootDialog("unsaved", [&] {
      window_->Page().Document()->setModified(true);
      window_->Work().New();
    });
    ShootDialog("outside", [&] {
      desk_.Put("newsletter.html", "neu");
      for (int wait = 0; wait < 20; ++wait) QTest::qWait(50);
    });
    window_->Source().selectAll();
    window_->Source().InsertFragment(kFaulty, "Bild");
    window_->Source().GoTo(1);
    Click("Probleme zeigen");
    Shoot("problems");
    ShootDialog("cannot-save", [&] { window_->Work().Save(); });
    { Draft(desk_.Path("drafts")).Write("x", desk_.Path("newsletter.html"), ""); }
    ShootDialog("draft", [&] { window_->Work().OfferDrafts(); });
    window_->Page().Document()->setModified(false);
    window_->findChild<QDockWidget*>("problems")->hide();
    TakeTakeOver();
    return good_;
  }

 private:
  static QString ExampleFolder(const QString& name) {
    return QString(KVO_SOURCE_DIR) + "/examples/" + name;
  }
  static std::string Example(const QString& folder, const QString& name) {
    QFile file(ExampleFolder(folder) + '/' + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
  }
  void CopyFolder(const QString& example, const QString& name) {
    QDir(desk_.Path(".")).mkpath(name);
    for (const QString& file : QDir(ExampleFolder(example)).entryList(QDir::Files))
      desk_.Put(name + '/' + file, Example(example, file));
  }

  static constexpr char kFaulty[] =
      "<p>Guten Tag <object classid=\"progid:KVOPDesignObjects.DTCContact\" id=\"Name\"><param "
      "name=\"field\" value=\"LastNam\"></object>,</p>\n<p>Ihre Bestellung: <object "
      "classid=\"progid:KVOPDesignObjects.DTCPrnt\" id=\"Summe\"></object></p>\n<object "
      "classid=\"progid:KVOPDesignObjects.DTCUnsubscriber\" id=\"Ab\"></object>\n<p>Ihre "
      "<object classid=\"progid:KVOPDesignObjects.DTCConfig\" id=\"Absender\"><param name=\"item\" "
      "value=\"Company\"></object></p>\n";

  void TakeUses() {
    const auto search = [this](const QString& name) {
      window_->Uses().Search(name);
      good_ &= WaitFor([&] { return !window_->Uses().IsSearching(); });
    };
    search("customer.LastName");
    window_->UsesList().onShow(1, false);
    Shoot("uses");
    ShootDialog("rename-name", [&] { Press("Umbenennen …"); });
    bool asked = false;
    WithDialogs(
        [&](QWidget& dialog) {
          if (auto* input = qobject_cast<QInputDialog*>(&dialog)) {
            input->setTextValue("customer.Surname");
            return input->accept();
          }
          SaveDialog("rename", dialog);
          asked = true;
          PressButton(dialog, "Abbrechen");
        },
        [&] {
          Press("Umbenennen …");
          good_ &= WaitFor([&] { return asked && !window_->Uses().IsSearching(); });
        });
    window_->findChild<QDockWidget*>("uses")->hide();
  }
  void TakeTakeOver() {
    good_ &= window_->Work().Open(desk_.Path("alt/newsletter-april.html"));
    TakeOverDialog dialog(window_->Page().Content(), window_->Work().Office(),
                          window_->Work().File().Folder(), window_.get());
    ShootDialog("takeover-without-mapping", [&] { dialog.exec(); });
    dialog.UseMapping(desk_.Path("alt/uebernahme.json"));
    ShootDialog("takeover", [&] { dialog.exec(); });
  }
  void TakePreviews() {
    window_->Middle().ShowPreview(true);
    WaitForPreview();
    Click("Shop lesen");
    QTest::qWait(700);
    Shoot("preview");
    Click("Dunkles Mailprogramm");
    Shoot("preview-dark-mail");
    Click("Dunkles Mailprogramm");
    ShootDialog("records", [&] { Click("Datensatz bearbeiten"); });
    TakeRecords();
    const std::string records = desk_.Bytes("preview.json");
    desk_.Put("preview.json", "{\"records\": [\n  {\"nam\": \"Anna\"},\n]}");
    good_ &= WaitFor([&] { return !window_->Preview().StateText().isEmpty(); });
    Shoot("preview-broken");
    desk_.Put("preview.json", records);
    good_ &= WaitFor([&] { return window_->Preview().StateText().isEmpty(); });
    window_->Middle().ShowPreview(false);
  }
  // Takes one picture of the same mail for three records.
  void TakeRecords() {
    constexpr int kCount = 3;
    constexpr int kGap = 12;
    const QSize before = window_->size();
    window_->resize(1210, 1600);  // as wide and as high as the mail
    window_->Preview().Mark(-1);
    QPixmap all;
    for (int number = 0; number < kCount; ++number) {
      WaitForPreview();
      QTest::qWait(700);
      const QPixmap one = window_->Preview().View().View().grab();
      if (all.isNull()) {
        all = QPixmap(one.width() * kCount + kGap * (kCount - 1), one.height());
        all.fill(Qt::white);
      }
      QPainter(&all).drawPixmap(number * (one.width() + kGap), 0, one);
      window_->Preview().onStep(1);
    }
    Save("preview-records", all.scaledToWidth(1500, Qt::SmoothTransformation));
    window_->Preview().onRecord(0);
    window_->resize(before);
  }
  void WaitForPreview() {
    good_ &= WaitFor([&] {
      const auto& shown = window_->Previews().Shown();
      return shown != nullptr &&
             window_->Preview().View().ShownRevision() == window_->Page().Revision();
    });
    QTest::qWait(300);
  }
  void GoTo(const std::string& id) {
    for (const Embedded& part : window_->Page().Content().EmbeddedParts())
      if (const auto look = window_->Page().LookAt(part.position); look && look->id == id)
        window_->Source().GoTo(part.position);
  }
  int Position() const { return window_->Source().CurrentControl().value_or(0); }

  // A button of the list of uses.
  void Press(const QString& caption) {
    for (QPushButton* button : window_->findChildren<QPushButton*>())
      if (button->isVisible() && button->text().remove('&') == caption) return button->click();
    good_ = false;
  }
  // A button of the window, by the beginning of its tool tip.
  void Click(const QString& name) {
    for (QToolButton* button : window_->findChildren<QToolButton*>())
      if (button->isVisible() && button->toolTip().startsWith(name)) return button->click();
    good_ = false;
  }
  void Shoot(const QString& name) {
    good_ &= WaitForViews(*window_);
    QTest::qWait(300);
    Save(name, window_->grab());
  }
  // Takes a picture of a dialog above the window, and closes the dialog.
  void ShootDialog(const QString& name, const std::function<void()>& open) {
    bool seen = false;
    WithDialogs(
        [&](QWidget& dialog) {
          SaveDialog(name, dialog);
          seen = true;
          dialog.close();
        },
        open);
    good_ &= seen;
  }
  void SaveDialog(const QString& name, QWidget& dialog) {
    QTest::qWait(100);
    QPixmap picture = window_->grab();
    const QPixmap top = dialog.grab();
    const QSize size = dialog.size();
    QPainter painter(&picture);
    const QRect place(
        QPoint(window_->width() - size.width(), window_->height() - size.height()) / 2, size);
    painter.drawPixmap(place.topLeft(), top);
    painter.setPen(QPen(dialog.palette().color(QPalette::Highlight), 2));
    painter.drawRect(place.adjusted(-1, -1, 1, 1));
    painter.end();
    Save(name, picture);
  }
  void Save(const QString& name, const QPixmap& picture) {
    good_ &= picture.save(folder_ + '/' + name + suffix_ + ".png");
  }

  Desk desk_;
  QString folder_;
  QString suffix_;
  std::unique_ptr<MainWindow> window_;
  bool good_ = true;
};

}  // namespace
}  // namespace kvo::editor

int main(int argc, char** argv) {
  using namespace kvo::editor;
  kvo::test::SetEnvironment("de_DE.UTF-8");
  PrepareBrowsers();
  QApplication application(argc, argv);
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  if (argc < 2) return 2;
  const QString folder = argv[1];
  QDir().mkpath(folder);
  const bool dark = argc > 2 && std::string(argv[2]) == "dark";
  QApplication::setPalette(Colors(dark ? Scheme::dark : Scheme::light));
  kvo::LoadTahoma();
  QString suffix = dark ? "-dark" : "";
  if (application.devicePixelRatio() > 1) suffix += "-200";
  if (Studio(folder, suffix).TakeAll()) return 0;
  std::cerr << "Some pictures could not be taken.\n";
  return 1;
}
