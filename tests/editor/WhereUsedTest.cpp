// Finding the uses of a name in the pages of a folder and its subfolders, and renaming it there.
#include "apps/editor/WhereUsed.h"

#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTreeWidget>
#include <fstream>

#include "apps/editor/SourceEdit.h"
#include "apps/editor/UsesPanel.h"
#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

std::string Contact(const std::string& field) {
  return "<object classid=\"progid:KVOPDesignObjects.DTCContact\" id=\"Ort\"><param name=\"field\" "
         "value=\"" +
         field + "\"></object>";
}

class WhereUsedTest : public testing::Test {
 protected:
  WhereUsedTest() : window(desk.NewWindow()) {
    desk.Put("b.html", "<p>#customer.City# #order.City#</p>\n");
    desk.Put("c.htm", Print("Zwei", "#customer.City#"));
    desk.Put("d.txt", "#customer.City#");
    EXPECT_TRUE(window->Work().Open(desk.Put("a.html", "<p>" + Contact("City") + "</p>\nText\n")));
    window->show();
  }

  std::string Bytes() const { return window->Page().Content().Bytes(); }
  QTreeWidget& List() { return *window->UsesList().findChild<QTreeWidget*>(); }
  QString Heading() { return window->UsesList().findChild<QLabel*>()->text(); }
  QStringList Rows() {
    QStringList rows;
    for (int row = 0; row < List().topLevelItemCount(); ++row) {
      const QTreeWidgetItem& item = *List().topLevelItem(row);
      rows.append(item.text(0) + " " + item.text(1) + " " + item.text(2));
    }
    return rows;
  }
  // By the menu's key, in the source.
  void AskAt(int position) {
    window->Source().GoTo(position);
    QTest::keyClick(&window->Source(), Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
  }
  void Wait() {
    EXPECT_TRUE(WaitFor([&] { return !window->Uses().IsSearching(); }));
  }
  void SearchFromControl() {
    AskAt(3);
    Wait();
  }
  QPushButton* Button(const QString& caption) {
    for (auto* button : window->UsesList().findChildren<QPushButton*>())
      if (button->text() == caption) return button;
    ADD_FAILURE() << caption.toStdString();
    return nullptr;
  }
  // Renames by the panel's button; `answer` closes the question or message that follows.
  void RenameTo(const QString& name, const std::function<void(QMessageBox&)>& answer) {
    bool asked = false;
    const auto close = [&](QWidget& dialog) {
      if (auto* input = qobject_cast<QInputDialog*>(&dialog)) {
        input->findChild<QLineEdit*>()->clear();
        QTest::keyClicks(input->findChild<QLineEdit*>(), name);
        QTest::keyClick(input, Qt::Key_Return);
      } else if (auto* box = qobject_cast<QMessageBox*>(&dialog)) {
        asked = true;
        answer(*box);
      }
    };
    WithDialogs(close, [&] {
      QTest::mouseClick(Button("&Umbenennen …"), Qt::LeftButton);
      EXPECT_TRUE(WaitFor([&] { return asked && !window->Uses().IsSearching(); }));
    });
  }

  Desk desk;
  std::unique_ptr<MainWindow> window;
};

TEST_F(WhereUsedTest, ListsUsesInAllPagesOfTheFolder) {
  SearchFromControl();
  EXPECT_EQ(Rows(), (QStringList{"a.html 1:94 Ort, Field: City",
                                 "b.html 1:14 <p>#customer.City# #order.City#</p>",
                                 "c.htm 1:100 Zwei, Value: #customer.City#"}));
  EXPECT_EQ(Heading(), "customer.City: 3 Stellen in 3 Seiten dieses Ordners");
}

TEST_F(WhereUsedTest, SearchesSubfoldersAsTheCommandDoes) {
  QDir folder(desk.Path("."));
  for (const char* name : {"b", "b/tief", ".verborgen", "nicht.html"}) folder.mkpath(name);
  for (const char* name : {"b/tief/Z.HTML", "b/a.html", ".verborgen/v.html", "b/.v.html"})
    desk.Put(name, "#customer.City#");
  // Links to folders are not followed, and a file with two names is one.
  ASSERT_TRUE(QFile::link(desk.Path("b"), desk.Path("link")));
  ASSERT_TRUE(QFile::link(desk.Path("b/a.html"), desk.Path("z.html")));
  ASSERT_TRUE(QFile::link(desk.Path("a.html"), desk.Path("b/offen.html")));
  SearchFromControl();
  EXPECT_EQ(Rows(), (QStringList{"a.html 1:94 Ort, Field: City", "b/a.html 1:11 #customer.City#",
                                 "b/tief/Z.HTML 1:11 #customer.City#",
                                 "b.html 1:14 <p>#customer.City# #order.City#</p>",
                                 "c.htm 1:100 Zwei, Value: #customer.City#"}));
  RenameTo("customer.Town", [](QMessageBox& box) { PressButton(box, "Umbenennen"); });
  EXPECT_EQ(desk.Bytes("b/tief/Z.HTML"), "#customer.Town#");
  EXPECT_EQ(desk.Bytes("b/a.html"), "#customer.Town#");
  EXPECT_EQ(desk.Bytes(".verborgen/v.html"), "#customer.City#");
  EXPECT_TRUE(QFileInfo(desk.Path("z.html")).isSymLink());
}

TEST_F(WhereUsedTest, IsAPanelThatEscapeLeaves) {
  auto* dock = window->findChild<QDockWidget*>("uses");
  ASSERT_NE(dock, nullptr);
  EXPECT_TRUE(dock->isHidden());
  SearchFromControl();
  EXPECT_TRUE(dock->isVisible());
  EXPECT_FALSE(dock->isFloating());
  EXPECT_TRUE(List().hasFocus());
  window->Source().Reveal(8);
  QTest::keyClick(&List(), Qt::Key_Return);
  EXPECT_TRUE(window->Source().hasFocus());
  EXPECT_EQ(window->Source().CurrentControl(), 3);
  List().setFocus();
  QTest::keyClick(&List(), Qt::Key_Down);
  QTest::keyClick(&List(), Qt::Key_Escape);
  EXPECT_TRUE(window->Source().hasFocus());
  EXPECT_EQ(window->Work().Title(), "a.html");
  EXPECT_TRUE(dock->isVisible());
  List().setFocus();
  QTest::keyClick(&List(), Qt::Key_Return);  // in another page
  EXPECT_EQ(window->Work().Title(), "b.html");
  EXPECT_TRUE(window->Source().hasFocus());
}

TEST_F(WhereUsedTest, NamesPagesThatCannotBeRead) {
  const std::string name = desk.Path("b").toStdString() + "/\xFF.html";
  QDir(desk.Path(".")).mkpath("b");
  std::ofstream(name) << "#customer.City#";
  SearchFromControl();
  EXPECT_EQ(Rows().size(), 3);
  EXPECT_TRUE(Heading().contains("kein gültiges UTF-8")) << Heading().toStdString();
  QString told;
  RenameTo("customer.Town", [&](QMessageBox& box) {
    told = box.text();
    QTest::keyClick(&box, Qt::Key_Escape);
  });
  EXPECT_TRUE(told.contains("kein gültiges UTF-8")) << told.toStdString();
  EXPECT_EQ(desk.Bytes("b.html"), "<p>#customer.City# #order.City#</p>\n");
  std::remove(name.c_str());  // the temporary folder cannot
}

TEST_F(WhereUsedTest, SearchesThePageAsItIsInTheEditor) {
  window->Source().GoTo(0);
  QTest::keyClicks(&window->Source(), "#customer.City#");
  AskAt(6);
  Wait();
  EXPECT_EQ(Rows().size(), 4);
  EXPECT_TRUE(Rows()[0].startsWith("a.html 1:11 #customer.City#<p><object"))
      << Rows()[0].toStdString();
}

TEST_F(WhereUsedTest, AsksForANameWhereThereIsNone) {
  QStringList offered;
  const auto choose = [&](QWidget& dialog) {
    auto& input = dynamic_cast<QInputDialog&>(dialog);
    offered = input.comboBoxItems();
    input.setTextValue("Zwei");
    QTest::keyClick(&input, Qt::Key_Return);
  };
  WithDialogs(choose, [&] { AskAt(window->Page().Document()->characterCount() - 1); });
  Wait();
  EXPECT_EQ(offered, QStringList{"customer.City"});
  EXPECT_EQ(Rows(), QStringList{"c.htm 1:57 Zwei, id: Zwei"});
}

TEST_F(WhereUsedTest, ClicksGoToPlacesInThisAndOtherPages) {
  SearchFromControl();
  window->Source().GoTo(8);
  const auto click = [&](int row) {
    List().scrollToItem(List().topLevelItem(row));
    QTest::mouseClick(List().viewport(), Qt::LeftButton, {},
                      List().visualItemRect(List().topLevelItem(row)).center());
  };
  click(0);
  EXPECT_EQ(window->Source().CurrentControl(), 3);
  click(1);
  EXPECT_EQ(window->Work().File().Name(), desk.Path("b.html"));
  EXPECT_EQ(window->Source().textCursor().position(), 13);
  click(2);
  EXPECT_EQ(window->Work().Title(), "c.htm");
  EXPECT_EQ(window->Source().CurrentControl(), 0);
}

TEST_F(WhereUsedTest, RenamesInAllPagesAndUndoesInTheOpenOne) {
  SearchFromControl();
  const std::string before = Bytes();
  QString question;
  RenameTo("customer.Town", [&](QMessageBox& box) {
    question = box.text();
    PressButton(box, "Umbenennen");
  });
  EXPECT_TRUE(
      question.startsWith("customer.City in customer.Town umbenennen: 3 Stellen in 3 "
                          "Seiten?"))
      << question.toStdString();
  EXPECT_EQ(Bytes(), "<p>" + Contact("Town") + "</p>\nText\n");
  EXPECT_EQ(desk.Bytes("a.html"), before);
  EXPECT_EQ(desk.Bytes("b.html"), "<p>#customer.Town# #order.City#</p>\n");
  EXPECT_EQ(desk.Bytes("c.htm"), Print("Zwei", "#customer.Town#"));
  EXPECT_EQ(desk.Bytes("d.txt"), "#customer.City#");
  Wait();
  EXPECT_EQ(Heading(), "customer.Town: 3 Stellen in 3 Seiten dieses Ordners");
  EXPECT_EQ(window->Page().UndoName(), "Umbenennen von customer.City in customer.Town");
  window->Page().Undo();
  EXPECT_EQ(Bytes(), before);
}

TEST_F(WhereUsedTest, RenamesInTheOfficeWhenAsked) {
  desk.Put("office.json",
           R"({"contactFields":[{"sqlName":"City","displayName":"","dataType":0}]})");
  ASSERT_TRUE(window->Work().Open(desk.Path("a.html")));
  SearchFromControl();
  RenameTo("customer.Town",
           [](QMessageBox& box) { PressButton(box, "Auch im Office umbenennen"); });
  EXPECT_EQ(desk.Bytes("office.json"),
            R"({"contactFields":[{"sqlName":"Town","displayName":"","dataType":0}]})");
  EXPECT_EQ(desk.Bytes("b.html"), "<p>#customer.Town# #order.City#</p>\n");
}

TEST_F(WhereUsedTest, ChangesNothingWhereAPlaceKeepsItsName) {
  const std::string broken = desk.Put("e.html",
                                      "<object classid=progid:KVOPDesignObjects.DTCIf>"
                                      "<param name=test value='#customer.City#'><x>"
                                      "</object>")
                                 .toStdString();
  SearchFromControl();
  const std::string before = Bytes();
  QString told;
  RenameTo("customer.Town", [&](QMessageBox& box) {
    told = box.text();
    QTest::keyClick(&box, Qt::Key_Escape);
  });
  EXPECT_TRUE(told.contains("e.html:1:")) << told.toStdString();
  EXPECT_EQ(Bytes(), before);
  EXPECT_EQ(desk.Bytes("b.html"), "<p>#customer.City# #order.City#</p>\n");
  RenameTo("order.Town", [&](QMessageBox& box) {
    told = box.text();
    QTest::keyClick(&box, Qt::Key_Escape);
  });
  EXPECT_TRUE(told.contains("customer.Name")) << told.toStdString();
}

TEST_F(WhereUsedTest, CancelsASearch) {
  AskAt(3);
  QTest::mouseClick(Button("Abbrechen"), Qt::LeftButton);
  EXPECT_FALSE(window->Uses().IsSearching());
  EXPECT_EQ(Heading(), "Abgebrochen");
  QTest::qWait(50);  // what was under way is not shown
  EXPECT_EQ(Rows(), QStringList());
  EXPECT_FALSE(Button("&Umbenennen …")->isEnabled());
}

}  // namespace
}  // namespace kvo::editor
