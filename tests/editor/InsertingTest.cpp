// A new control opens its property pages at once, unless the user switched that off.
#include <QAction>
#include <QApplication>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>

#include "host/qt/PropertyFrameDialog.h"
#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

class InsertingTest : public testing::Test {
 protected:
  InsertingTest() {
    QSettings().clear();  // as for a new user
    window = desk.NewWindow();
    Open("ab");
    QTest::keyClick(&window->Source(), Qt::Key_Right);
  }

  void Open(const std::string& bytes) {
    window->Page().Document()->setModified(false);
    ASSERT_TRUE(window->Work().Open(desk.Put("seite.html", bytes)));
  }
  int ToolOf(std::string_view className) {
    const auto& tools = window->Tools().Tools();
    const auto tool =
        std::ranges::find(tools, className, [](const Tool& each) { return each.contract->name; });
    return static_cast<int>(tool - tools.begin());
  }
  // Runs `insert` and answers the property pages with `edit`; returns how often they opened.
  int PagesDuring(const std::function<void()>& insert,
                  const std::function<void(QWidget& frame)>& edit) {
    int opened = 0;
    WithDialogs(
        [&](QWidget& dialog) {
          EXPECT_NE(dynamic_cast<PropertyFrameDialog*>(&dialog), nullptr);
          ++opened;
          edit(dialog);
        },
        [&] {
          insert();
          QTest::qWait(150);
        });
    return opened;
  }
  QAction& Switch() {
    for (QAction* action : window->findChildren<QAction*>())
      if (action->text().remove('&') == "Nach dem Einfügen bearbeiten") return *action;
    throw std::logic_error("no such menu entry");
  }
  QString Text() { return window->Page().Content().Text(); }
  static void Cancel(QWidget& frame) { PressButton(frame, "Abbrechen"); }

  Desk desk;
  std::unique_ptr<MainWindow> window;
};

TEST_F(InsertingTest, APageIsFilledAtOnceAndTypingGoesOnBehindTheControl) {
  const int opened = PagesDuring([&] { window->Tools().onInsert(ToolOf("DTCPrint")); },
                                 [](QWidget& frame) {
                                   QTest::keyClicks(frame.findChild<QLineEdit*>("txtValue"), "x");
                                   PressButton(frame, "OK");
                                 });
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(ToText(window->Controls().Load(1)->Get("Value")), "x");
  EXPECT_EQ(window->Page().UndoName(), "Ausdruck einfügen");
  EXPECT_EQ(window->Source().textCursor().position(), 2);
  QTest::keyClicks(&window->Source(), "y");
  EXPECT_EQ(Text(), QString("a") + kEmbeddedCharacter + "yb");
  window->Page().Undo();
  window->Page().Undo();
  EXPECT_EQ(Text(), "ab");
  window->Page().Redo();
  EXPECT_EQ(ToText(window->Controls().Load(1)->Get("Value")), "x");
}

TEST_F(InsertingTest, ACancelledPageLeavesTheControl) {
  EXPECT_EQ(PagesDuring([&] { window->Tools().onInsert(ToolOf("DTCIf")); }, Cancel), 1);
  EXPECT_EQ(Text(), QString("a") + kEmbeddedCharacter + "b");
  EXPECT_EQ(window->Page().UndoName(), "Wenn/sonst einfügen");
  QTest::keyClick(&window->Source(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Text(), "ab");
}

TEST_F(InsertingTest, ADroppedToolOpensItsPagesAfterTheDrop) {
  bool dropped = false;
  const int opened = PagesDuring(
      [&] {
        QMimeData data;
        data.setData(kToolType, QByteArray::number(ToolOf("DTCPrint")));
        QWidget* view = window->Source().viewport();
        const QPoint point = window->Source().cursorRect().center();
        QDragEnterEvent enter(point, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(view, &enter);
        QDropEvent drop(point, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(view, &drop);
        dropped = true;
      },
      [&](QWidget& frame) {
        EXPECT_TRUE(dropped);
        Cancel(frame);
      });
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(Text(), QString("a") + kEmbeddedCharacter + "b");
}

TEST_F(InsertingTest, ControlsWithoutPagesAndCompleteFieldsOpenNone) {
  for (const char* name : {"DTCConfig", "DTCScript", "DTCViewtracker"})
    EXPECT_EQ(PagesDuring([&] { window->Tools().onInsert(ToolOf(name)); }, Cancel), 0) << name;
  desk.Put("office.json",
           R"({"contactFields":[{"sqlName":"City","displayName":"Ort","dataType":0}]})");
  Open("");
  const auto field = static_cast<int>(window->Tools().Tools().size()) - 1;
  EXPECT_EQ(PagesDuring([&] { window->Tools().onInsert(field); }, Cancel), 0);
  EXPECT_TRUE(window->Page().IsControl(0));
}

TEST_F(InsertingTest, TheMenuSwitchesItOffForGood) {
  EXPECT_TRUE(Switch().isChecked());
  Switch().trigger();
  EXPECT_EQ(PagesDuring([&] { window->Tools().onInsert(ToolOf("DTCPrint")); }, Cancel), 0);
  // Enter opens them then.
  EXPECT_EQ(PagesDuring([&] { QTest::keyClick(&window->Source(), Qt::Key_Return); }, Cancel), 1);
  window->Page().Document()->setModified(false);
  window = desk.NewWindow();
  EXPECT_FALSE(Switch().isChecked());
  EXPECT_EQ(PagesDuring([&] { window->Tools().onInsert(ToolOf("DTCPrint")); }, Cancel), 0);
  Switch().trigger();
  EXPECT_EQ(PagesDuring([&] { window->Tools().onInsert(ToolOf("DTCPrint")); }, Cancel), 1);
}

}  // namespace
}  // namespace kvo::editor
