// "Vorlage übernehmen": the table of finds, the choice, the mapping, one step to undo.
#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTreeWidget>

#include "apps/editor/SourceEdit.h"
#include "apps/editor/TakeOver.h"
#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

const std::string kOldPage =
    "<p>Hallo <kv:contact field=\"FirstName\"/>!</p>\r\n"
    "<p><kv:print value=\"x\" /> <kv:order field=\"OrderID\"/></p>\r\n"
    "<p>{{ vorname }} [ORT]</p>\r\n";
const std::string kMapping =
    R"({"placeholders": [{"pattern": "{{ {name} }}", "fields": {"vorname": "customer.FirstName"}}]})";

// Triggers the menu's action, as its access key does.
void TakeOverPage(MainWindow& window) {
  for (QAction* action : window.menuBar()->actions().front()->menu()->actions())
    if (action->text().remove('&').startsWith("Vorlage übernehmen")) return action->trigger();
  FAIL() << "no such action";
}

class TakeOverTest : public testing::Test {
 protected:
  Desk desk;
  std::unique_ptr<MainWindow> Open(const std::string& page) {
    auto window = desk.NewWindow();
    window->Work().Open(desk.Put("page.html", page));
    return window;
  }
};

std::vector<std::string> Rows(QTreeWidget& table) {
  std::vector<std::string> rows;
  for (int row = 0; row < table.topLevelItemCount(); ++row) {
    const QTreeWidgetItem& item = *table.topLevelItem(row);
    const bool checked = item.checkState(0) == Qt::Checked;
    rows.push_back((checked ? "x " : "- ") + item.text(0).toStdString() + ' ' +
                   item.text(2).toStdString());
  }
  return rows;
}

TEST_F(TakeOverTest, TakesOverWhatIsCheckedInOneStep) {
  const auto window = Open(kOldPage);
  WithDialogs(
      [](QWidget& widget) {
        auto& dialog = dynamic_cast<TakeOverDialog&>(widget);
        EXPECT_EQ(
            Rows(dialog.Table()),
            (std::vector<std::string>{
                "x 1:10 Kontaktfeld: Field = FirstName",
                "- 2:4 Statt \"nt value=\"x\" />\" schriebe das Control \"nt value=\"x\"/>\".",
                "x 2:27 Bestellfeld: Field = OrderID",
                "- 3:4 Steht nicht in der Zuordnung. Tragen Sie ihn dort ein.",
                "- 3:18 Steht nicht in der Zuordnung. Tragen Sie ihn dort ein."}));
        EXPECT_EQ(dialog.Source().textCursor().selectedText(), "<kv:contact field=\"FirstName\"/>");
        // Down twice shows the third find; Space takes its check mark away.
        QTest::keyClick(&dialog.Table(), Qt::Key_Down);
        QTest::keyClick(&dialog.Table(), Qt::Key_Down);
        EXPECT_EQ(dialog.Source().textCursor().selectedText(), "<kv:order field=\"OrderID\"/>");
        EXPECT_EQ(dialog.Note().text(), "2 von 5 Fundstellen werden übernommen.");
        QTest::keyClick(&dialog.Table(), Qt::Key_Space);
        EXPECT_EQ(dialog.Note().text(), "1 von 5 Fundstellen werden übernommen.");
        PressButton(dialog, "Übernehmen");
      },
      [&] { TakeOverPage(*window); });
  const std::string taken = window->Page().Content().Bytes();
  EXPECT_EQ(taken.find("<kv:contact"), std::string::npos);
  EXPECT_NE(taken.find("DTCContact"), std::string::npos);
  EXPECT_NE(taken.find("<kv:order field=\"OrderID\"/>"), std::string::npos);
  EXPECT_EQ(window->Page().UndoName(), "Vorlage übernehmen");
  window->Page().Undo();
  EXPECT_EQ(window->Page().Content().Bytes(), kOldPage);
  EXPECT_EQ(window->Page().UndoName(), "");
}

TEST_F(TakeOverTest, UsesAMappingAndSaysWhatIsWrongWithIt) {
  const auto window = Open(kOldPage);
  const QString good = desk.Put("good.json", kMapping);
  const QString bad = desk.Put("bad.json", "{\"links\": 1}");
  WithDialogs(
      [&](QWidget& widget) {
        auto& dialog = dynamic_cast<TakeOverDialog&>(widget);
        dialog.UseMapping(bad);
        EXPECT_TRUE(dialog.Note().text().contains("links: Erwartet wird ein Objekt"))
            << dialog.Note().text().toStdString();
        EXPECT_EQ(dialog.Table().topLevelItemCount(), 5);
        dialog.UseMapping(good);
        EXPECT_EQ(Rows(dialog.Table())[3], "x 3:4 Kontaktfeld: Field = FirstName");
        PressButton(dialog, "Übernehmen");
      },
      [&] { TakeOverPage(*window); });
  const std::string taken = window->Page().Content().Bytes();
  EXPECT_EQ(taken.find("{{ vorname }}"), std::string::npos);
  EXPECT_NE(taken.find("[ORT]"), std::string::npos);
}

TEST_F(TakeOverTest, CancelChangesNothing) {
  const auto window = Open(kOldPage);
  WithDialogs([](QWidget& dialog) { PressButton(dialog, "Abbrechen"); },
              [&] { TakeOverPage(*window); });
  EXPECT_EQ(window->Page().Content().Bytes(), kOldPage);
  EXPECT_EQ(window->Page().UndoName(), "");
}

TEST_F(TakeOverTest, NothingToTakeOver) {
  const auto window = Open("<p>Hallo</p>" + Print("P", "x"));
  WithDialogs(
      [](QWidget& widget) {
        auto& dialog = dynamic_cast<TakeOverDialog&>(widget);
        EXPECT_EQ(dialog.Note().text(), "Es wurde nichts gefunden, das zu übernehmen ist.");
        PressButton(dialog, "Abbrechen");
      },
      [&] { TakeOverPage(*window); });
}

}  // namespace
}  // namespace kvo::editor
