// The tool bar and its icons.
#include "apps/editor/ToolBar.h"

#include <QAction>
#include <QApplication>
#include <QDirIterator>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QToolButton>
#include <map>

#include "apps/editor/Colors.h"
#include "apps/editor/Icons.h"
#include "common/values/Localized.h"
#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

// The desktop decides about it.
QString Redo() { return "Wiederholen (" + QKeySequence(QKeySequence::Redo).toString() + ")"; }

class ToolBarTest : public testing::Test {
 protected:
  ToolBarTest() : window(desk.NewWindow()), bar(*window->findChild<ToolBar*>()) {}
  ~ToolBarTest() override { QApplication::setPalette(QPalette()); }

  QToolButton& Button(const QString& name) {
    for (QToolButton* button : bar.findChildren<QToolButton*>())
      if (button->toolTip().startsWith(name)) return *button;
    ADD_FAILURE() << "no button " << name.toStdString();
    return *bar.findChild<QToolButton*>();
  }
  // The buttons' tool tips, "|" between groups.
  QStringList Shown() const {
    QStringList shown;
    for (const QAction* action : bar.actions())
      if (action->isVisible()) shown << (action->isSeparator() ? "|" : action->toolTip());
    return shown;
  }

  Desk desk;
  std::unique_ptr<MainWindow> window;
  ToolBar& bar;
};

TEST_F(ToolBarTest, NoMenuHasTwoEntriesWithTheSameAccessKey) {
  const auto check = [](const QList<QAction*>& entries, const std::string& menu) {
    std::map<QChar, std::string> owners;
    for (const QAction* entry : entries) {
      const QString text = entry->text().remove("&&");
      const auto at = text.indexOf('&');
      if (at < 0 || at + 1 == text.size()) continue;
      const auto [owner, first] = owners.emplace(text[at + 1].toUpper(), text.toStdString());
      EXPECT_TRUE(first) << menu << ": " << owner->second << ", " << text.toStdString();
    }
    return owners.size();
  };
  for (const Language language : {Language::german, Language::english}) {
    UserLanguage(language);
    window = desk.NewWindow();
    check(window->menuBar()->actions(), "menu bar");
    std::size_t keys = 0;
    for (const QAction* menu : window->menuBar()->actions())
      keys += check(menu->menu()->actions(), menu->text().toStdString());
    EXPECT_GT(keys, 30U);
  }
  UserLanguage(Language::german);
}

TEST_F(ToolBarTest, ShowsWhatAuthorsNeedMostWithItsKeys) {
  const QStringList expected = {
      "Neu (Ctrl+N)",
      "Öffnen (Ctrl+O)",
      "Speichern (Ctrl+S)",
      "|",
      "Rückgängig (Ctrl+Z)",
      Redo(),
      "|",
      "Fett (Ctrl+B)",
      "Kursiv (Ctrl+I)",
      "Unterstrichen (Ctrl+U)",
      "Überschrift 2 (Ctrl+Alt+2)",
      "Aufzählung (Ctrl+Shift+8)",
      "Textfarbe",
      "Link (Ctrl+K)",
      "Bild (Ctrl+Shift+I)",
      "|",
      "Control einfügen (Ctrl+T)",
      "|",
      "Veröffentlichen (Ctrl+Shift+P)",
      "Vorschau (Alt+4)",
      "|",
      "An die Breite anpassen",
      "600 Pixel breit, wie im Mailprogramm",
      "360 Pixel breit, wie auf dem Telefon",
  };
  EXPECT_EQ(Shown().join('\n').toStdString(), expected.join('\n').toStdString());
  for (const QToolButton* button : bar.findChildren<QToolButton*>()) {
    if (button->defaultAction() == nullptr) continue;  // for what does not fit
    EXPECT_FALSE(button->icon().pixmap(20).isNull()) << button->toolTip().toStdString();
    EXPECT_FALSE(button->text().isEmpty()) << button->toolTip().toStdString();
  }
}

TEST_F(ToolBarTest, ItsButtonsDoWhatTheMenuDoes) {
  ASSERT_TRUE(window->Work().Open(desk.Put("seite.html", "alt")));
  EXPECT_FALSE(Button("Rückgängig").isEnabled());
  QTest::keyClicks(&window->Source(), "neu ");
  EXPECT_TRUE(Button("Rückgängig").isEnabled());
  EXPECT_EQ(Button("Rückgängig").toolTip(), "Rückgängig: Eingabe (Ctrl+Z)");
  QTest::mouseClick(&Button("Speichern"), Qt::LeftButton);
  EXPECT_EQ(desk.Bytes("seite.html"), "neu alt");
  QTest::mouseClick(&Button("Rückgängig"), Qt::LeftButton);
  EXPECT_EQ(window->Page().Content().Bytes(), "alt");
  QTest::mouseClick(&Button("Wiederholen"), Qt::LeftButton);
  EXPECT_EQ(window->Page().Content().Bytes(), "neu alt");
  QTest::mouseClick(&Button("Control einfügen"), Qt::LeftButton);
  EXPECT_TRUE(window->Tools().findChild<QLineEdit*>()->hasFocus());
  QTest::mouseClick(&Button("Neu"), Qt::LeftButton);
  EXPECT_NE(window->Page().Content().Bytes(), "neu alt");
}

// The strokes' colour: of the pixel that covers the most.
QColor ColorOf(const QIcon& icon, QIcon::Mode mode) {
  const QImage image = icon.pixmap(32, mode).toImage();
  QColor strongest(Qt::transparent);
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (image.pixelColor(x, y).alpha() > strongest.alpha()) strongest = image.pixelColor(x, y);
  return strongest;
}

TEST_F(ToolBarTest, IconsAreDrawnInTheColourOfTheText) {
  int icons = 0;
  for (QDirIterator files(":/editor/icons"); files.hasNext();) {
    QFile file(files.next());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    if (!file.readAll().contains("currentColor")) continue;
    ++icons;
    const QString name = files.fileInfo().completeBaseName();
    const QIcon icon = LineIcon(name);
    for (const Scheme scheme : {Scheme::light, Scheme::dark}) {
      const QPalette palette = Colors(scheme);
      QApplication::setPalette(palette);
      for (const QIcon::Mode mode : {QIcon::Normal, QIcon::Disabled}) {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QColor wanted = palette.color(group, QPalette::ButtonText);
        const QColor drawn = ColorOf(icon, mode);
        EXPECT_EQ(drawn.alpha(), 255) << name.toStdString();
        EXPECT_NEAR(drawn.red(), wanted.red(), 4) << name.toStdString();
      }
    }
    EXPECT_EQ(icon.pixmap(QSize(20, 20), 2.0).size(), QSize(40, 40)) << name.toStdString();
  }
  EXPECT_EQ(icons, 26);
  EXPECT_TRUE(LineIcon("gibt es nicht").isNull());
}

}  // namespace
}  // namespace kvo::editor
