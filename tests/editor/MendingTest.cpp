// The problems of a page in the editor: their places, the keys that go through them, their fixes.
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTextBlock>
#include <QTimer>
#include <QToolButton>

#include "apps/editor/Panels.h"
#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

// On lines 1, 2 and 4; a fix for the first and the last.
const std::string kPageToMend =
    "\xC3\xA4<object classid=\"progid:KVOPDesignObjects.DTCPrnt\"></object>\r\n"
    "<object classid=\"progid:KVOPDesignObjects.DTCContact\"><param name=\"format\" "
    "value=\"\"></object>\r\n"
    "<p>x</p>\r\n"
    "<object classid=\"progid:KVOPDesignObjects.DTCConfig\"><param name=\"item\" "
    "value=\"a\"></object>";

class MendingTest : public testing::Test {
 protected:
  MendingTest() : window(desk.NewWindow()) {
    EXPECT_TRUE(window->Work().Open(desk.Put("seite.html", kPageToMend)));
    EXPECT_TRUE(WaitForViews(*window));
  }
  std::string Bytes() const { return window->Page().Content().Bytes(); }
  void Press(QWidget& widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&widget, static_cast<Qt::Key>(key), modifiers);
  }
  int Line() const { return window->Source().textCursor().blockNumber() + 1; }
  // What is underlined or framed.
  std::vector<std::pair<int, int>> Marked() const {
    std::vector<std::pair<int, int>> marked;
    for (const auto& each : window->Source().extraSelections())
      if (each.format.underlineStyle() == QTextCharFormat::WaveUnderline)
        marked.emplace_back(each.cursor.selectionStart(), each.cursor.selectionEnd());
    return marked;
  }

  Desk desk;
  std::unique_ptr<MainWindow> window;
};

TEST_F(MendingTest, MarksThePlacesInTheSource) {
  ASSERT_EQ(window->Analysed()->problems.size(), 3U);
  const std::string wrong = "<object classid=\"progid:KVOPDesignObjects.DTCPrnt\">";
  const int first = 1 + static_cast<int>(wrong.size());
  const int contact = first + 10;  // behind "</object>" and the line break
  ASSERT_EQ(Marked().size(), 3U);
  EXPECT_EQ(Marked()[0], std::make_pair(1, first));
  EXPECT_EQ(Marked()[1], std::make_pair(contact, contact + 1)) << "a box is one character";
  QTextCursor cursor = window->Source().textCursor();
  cursor.setPosition(1);
  cursor.setPosition(first + 9, QTextCursor::KeepAnchor);
  window->Source().setTextCursor(cursor);
  Press(window->Source(), Qt::Key_Delete);
  ASSERT_TRUE(WaitForViews(*window));
  EXPECT_EQ(Marked().size(), 2U);
}

TEST_F(MendingTest, StepsThroughTheProblems) {
  SourceEdit& source = window->Source();
  for (const int line : {1, 2, 4, 1}) {
    Press(source, Qt::Key_F8);
    EXPECT_EQ(Line(), line);
    EXPECT_EQ(window->Problems().ChosenRow(), line == 4 ? 2 : line - 1);
  }
  for (const int line : {4, 2, 1, 4}) {
    Press(source, Qt::Key_F8, Qt::ShiftModifier);
    EXPECT_EQ(Line(), line);
  }
}

TEST_F(MendingTest, MakesAFixInOneStep) {
  SourceEdit& source = window->Source();
  Press(source, Qt::Key_F8);
  Press(source, Qt::Key_Period, Qt::ControlModifier);
  std::string mended = kPageToMend;
  mended.replace(mended.find("DTCPrnt"), 7, "DTCPrint");
  EXPECT_EQ(Bytes(), mended);
  EXPECT_TRUE(window->Page().UndoName().contains("DTCPrint"))
      << window->Page().UndoName().toStdString();
  Press(source, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Bytes(), kPageToMend);
}

TEST_F(MendingTest, FixesTheChosenRowOfTheList) {
  ProblemsPanel& list = window->Problems();
  window->findChild<QToolButton*>("problemCount")->click();
  list.setFocus();
  list.Choose(2);
  Press(list, Qt::Key_Period, Qt::ControlModifier);
  EXPECT_NE(Bytes().find("<param name=\"basename\" value=\"config\">"), std::string::npos);
  ASSERT_TRUE(WaitForViews(*window));
  EXPECT_EQ(window->Analysed()->problems.size(), 2U);
}

TEST_F(MendingTest, ChangesNothingWithoutASureFix) {
  SourceEdit& source = window->Source();
  Press(source, Qt::Key_F8);
  Press(source, Qt::Key_F8);
  ASSERT_EQ(Line(), 2);
  Press(source, Qt::Key_Period, Qt::ControlModifier);
  EXPECT_EQ(Bytes(), kPageToMend);
  EXPECT_EQ(window->Page().UndoName(), "");
}

TEST_F(MendingTest, CopiesAFaultyPlaceAsItIsWritten) {
  window->Source().selectAll();
  Press(window->Source(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(QGuiApplication::clipboard()->text().contains("DTCPrnt"));
  window->Source().GoTo(0);
  Press(window->Source(), Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Bytes(), kPageToMend + kPageToMend);
}

TEST_F(MendingTest, OffersTheFixInTheMenuOfARow) {
  ProblemsPanel& list = window->Problems();
  window->findChild<QToolButton*>("problemCount")->click();
  QString offered;
  QTimer::singleShot(0, &list, [&] {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (menu == nullptr) return;
    offered = menu->actions().front()->text();
    menu->actions().front()->trigger();
    menu->close();
  });
  const QPoint point = list.visualRect(list.model()->index(0, 0)).center();
  QContextMenuEvent event(QContextMenuEvent::Mouse, point, list.viewport()->mapToGlobal(point));
  QApplication::sendEvent(list.viewport(), &event);
  EXPECT_EQ(offered, "\"DTCPrnt\" in \"DTCPrint\" ändern");
  EXPECT_NE(Bytes().find("DTCPrint"), std::string::npos);
  EXPECT_TRUE(list.model()->index(2, 2).data(Qt::ToolTipRole).toString().contains("Strg+."));
}

}  // namespace
}  // namespace kvo::editor
