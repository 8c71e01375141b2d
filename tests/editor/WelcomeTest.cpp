// What shows before there is a page, and what empty panels say.
#include "apps/editor/Welcome.h"

#include <QApplication>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QToolButton>

#include "apps/editor/EmptyHint.h"
#include "apps/editor/Panels.h"
#include "apps/editor/Templates.h"
#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

class WelcomeTest : public testing::Test {
 protected:
  WelcomeTest() { Begin(); }

  void Begin() {
    window = desk.NewWindow();
    window->ShowWelcome();
  }
  Welcome& Page() { return window->Beginning(); }
  QListWidget& Recent() { return *Page().findChild<QListWidget*>(); }
  void Press(const QString& caption) { PressButton(Page(), caption); }
  bool Shows(const char* dock) { return window->findChild<QDockWidget*>(dock)->isVisible(); }

  Desk desk;
  std::unique_ptr<MainWindow> window;
};

TEST_F(WelcomeTest, TakesThePlaceOfPageAndPanels) {
  EXPECT_TRUE(Page().isVisible());
  EXPECT_FALSE(window->Source().isVisible());
  EXPECT_FALSE(window->Design().isVisible());
  for (const char* dock : {"toolbox", "outline", "properties", "runtime"})
    EXPECT_FALSE(Shows(dock)) << dock;
  EXPECT_EQ(window->windowTitle(), "KVOPDesignObjects");
  // What needs a page has nothing to do.
  QTest::keyClick(window.get(), Qt::Key_T, Qt::ControlModifier);
  EXPECT_FALSE(Shows("toolbox"));
  QTest::keyClick(window.get(), Qt::Key_F, Qt::ControlModifier);
  QTest::keyClick(window.get(), Qt::Key_1, Qt::AltModifier);
  EXPECT_FALSE(window->Source().isVisible());
  EXPECT_TRUE(Page().isVisible());

  Press("Neue Seite");
  EXPECT_FALSE(Page().isVisible());
  EXPECT_TRUE(window->Source().isVisible());
  EXPECT_TRUE(window->Source().hasFocus());
  for (const char* dock : {"toolbox", "outline", "properties", "runtime"})
    EXPECT_TRUE(Shows(dock)) << dock;
  EXPECT_FALSE(Shows("problems"));
  EXPECT_TRUE(window->windowTitle().startsWith("Unbenannt"));
  QTest::keyClick(&window->Source(), Qt::Key_T, Qt::ControlModifier);
  EXPECT_TRUE(window->Tools().isAncestorOf(QApplication::focusWidget()));
}

TEST_F(WelcomeTest, OffersEveryTemplate) {
  const std::vector<Template> templates = Templates();
  ASSERT_EQ(templates.size(), 4U);
  for (const Template& each : templates) {
    Press(each.title);
    EXPECT_EQ(window->Page().Content().Bytes(), each.page.toStdString());
    EXPECT_FALSE(Page().isVisible());
    EXPECT_FALSE(window->isWindowModified());
    Begin();
  }
}

TEST_F(WelcomeTest, OpensAFile) {
  QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  desk.Put("seite.html", "da");
  WithDialogs(
      [&](QWidget& dialog) {
        auto* name = dialog.findChild<QLineEdit*>("fileNameEdit");
        if (name == nullptr) {
          ADD_FAILURE() << "no file dialog";
          return dialog.close(), void();
        }
        name->setText(desk.Path("seite.html"));
        QTest::keyClick(name, Qt::Key_Return);
      },
      [&] { Press("Öffnen …"); });
  EXPECT_EQ(window->Page().Content().Bytes(), "da");
  EXPECT_FALSE(Page().isVisible());
}

TEST_F(WelcomeTest, ListsTheFilesOpenedLast) {
  EXPECT_FALSE(Recent().isVisible());
  const auto says = [&](const QString& text) {
    for (const QLabel* label : Page().findChildren<QLabel*>())
      if (label->isVisible() && label->text() == text) return true;
    return false;
  };
  const QString none = "Hier stehen die Seiten, die Sie geöffnet haben.";
  EXPECT_TRUE(says(none));
  ASSERT_TRUE(window->Work().Open(desk.Put("eins.html", "1")));
  ASSERT_TRUE(window->Work().Open(desk.Put("zwei.html", "2")));

  Begin();
  EXPECT_FALSE(says(none));
  ASSERT_EQ(Recent().count(), 2);
  EXPECT_TRUE(Recent().item(0)->text().startsWith("zwei.html\n"));
  QTest::mouseClick(Recent().viewport(), Qt::LeftButton, {},
                    Recent().visualItemRect(Recent().item(1)).center());
  EXPECT_EQ(window->Page().Content().Bytes(), "1");

  // By keyboard; a file that is gone is said, and the page stays.
  QFile::remove(desk.Path("eins.html"));
  Begin();
  Recent().setFocus();
  WithDialogs([](QWidget& dialog) { dialog.close(); },
              [&] { QTest::keyClick(&Recent(), Qt::Key_Return); });
  EXPECT_TRUE(Page().isVisible());
  QTest::keyClick(&Recent(), Qt::Key_Down);
  QTest::keyClick(&Recent(), Qt::Key_Return);
  EXPECT_EQ(window->Page().Content().Bytes(), "2");
}

TEST_F(WelcomeTest, IsReachedByTheTabKey) {
  EXPECT_TRUE(Page().isAncestorOf(QApplication::focusWidget()));
  QStringList reached;
  for (int tab = 0; tab < 6; ++tab) {
    const auto* button = qobject_cast<QPushButton*>(QApplication::focusWidget());
    ASSERT_NE(button, nullptr) << tab;
    reached << button->text();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  EXPECT_EQ(reached, (QStringList{"Neue Seite", "Öffnen …", "Bestellbestätigung", "Geburtstagsgruß",
                                  "Newsletter", "Versandmitteilung"}));
}

TEST_F(WelcomeTest, APanelThatWasHiddenStaysHiddenAndTheWindowIsRemembered) {
  Press("Neue Seite");
  window->findChild<QDockWidget*>("outline")->hide();
  window->findChild<QDockWidget*>("problems")->show();
  EXPECT_TRUE(window->close());
  Begin();
  EXPECT_FALSE(Shows("problems"));
  EXPECT_TRUE(window->close());  // from the welcome page
  Begin();
  Press("Neue Seite");
  EXPECT_FALSE(Shows("outline"));
  EXPECT_TRUE(Shows("problems"));
  EXPECT_TRUE(Shows("toolbox"));
}

// --- empty panels ---

TEST_F(WelcomeTest, EmptyPanelsSayWhatToDo) {
  const auto hint = [&](const char* dock) -> QString {
    const auto* label = window->findChild<QDockWidget*>(dock)->findChild<EmptyHint*>();
    return label->isVisible() ? label->text() : QString();
  };
  ASSERT_TRUE(window->Work().Open(desk.Put("leer.html", "")));
  window->findChild<QDockWidget*>("problems")->show();
  ASSERT_TRUE(WaitForViews(*window));
  EXPECT_TRUE(hint("outline").contains("Strg+T")) << hint("outline").toStdString();
  EXPECT_TRUE(hint("properties").startsWith("Wählen Sie ein Control"));
  EXPECT_TRUE(hint("problems").startsWith("Keine Probleme"));
  EXPECT_TRUE(window->RuntimeText().placeholderText().startsWith("Wählen Sie ein Control"));
  EXPECT_FALSE(window->Output().placeholderText().isEmpty());
  EXPECT_EQ(window->Problems().accessibleDescription(), hint("problems"));

  ASSERT_TRUE(window->Work().Open(desk.Put(
      "voll.html",
      Print("a", "1") + "<object classid=\"progid:KVOPDesignObjects.DTCPrnt\"></object>")));
  window->Source().SelectControl(0);
  ASSERT_TRUE(WaitForViews(*window));
  EXPECT_EQ(hint("outline"), "");
  EXPECT_EQ(hint("properties"), "");
  EXPECT_EQ(hint("problems"), "");
  EXPECT_EQ(window->Problems().accessibleDescription(), "");
  EXPECT_FALSE(window->RuntimeText().toPlainText().isEmpty());
}

TEST_F(WelcomeTest, TheStatusBarCountsProblemsAndOpensThem) {
  auto* count = window->findChild<QToolButton*>("problemCount");
  ASSERT_NE(count, nullptr);
  ASSERT_TRUE(window->Work().Open(desk.Put("gut.html", Print("a", "1"))));
  ASSERT_TRUE(WaitForViews(*window));
  EXPECT_EQ(count->text(), "Keine Probleme");
  EXPECT_FALSE(Shows("problems"));
  EXPECT_FALSE(Shows("output"));
  ASSERT_TRUE(window->Work().Open(
      desk.Put("falsch.html", "<object classid=\"progid:KVOPDesignObjects.DTCPrnt\"></object>")));
  ASSERT_TRUE(WaitForViews(*window));
  EXPECT_EQ(count->text(), "Fehler: 1  Warnungen: 0");
  EXPECT_FALSE(count->icon().isNull());
  QTest::mouseClick(count, Qt::LeftButton);
  EXPECT_TRUE(window->Problems().isVisible());
  EXPECT_TRUE(window->Problems().hasFocus());
  QTest::mouseClick(count, Qt::LeftButton);
  EXPECT_FALSE(window->Problems().isVisible());
  // Behind the output, it comes to the front.
  auto* problems = window->findChild<QDockWidget*>("problems");
  auto* output = window->findChild<QDockWidget*>("output");
  problems->show();
  output->show();
  output->raise();
  const auto inFront = [](const QDockWidget* dock) { return dock->geometry().left() >= 0; };
  EXPECT_TRUE(WaitFor([&] { return inFront(output) && !inFront(problems); }));
  QTest::mouseClick(count, Qt::LeftButton);
  EXPECT_TRUE(WaitFor([&] { return inFront(problems) && !inFront(output); }));
  EXPECT_TRUE(window->Problems().hasFocus());
  QTest::keyClick(&window->Problems(), Qt::Key_F6);
  EXPECT_TRUE(WaitFor([&] { return inFront(output); }));
  EXPECT_TRUE(window->Output().hasFocus());
}

}  // namespace
}  // namespace kvo::editor
