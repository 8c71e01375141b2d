// The window: files, edits, panels and views.
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QTabBar>
#include <QTableView>
#include <QTextDocument>
#include <QToolTip>
#include <QTreeWidget>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>

#include "apps/editor/FindBar.h"
#include "apps/editor/Panels.h"
#include "apps/editor/Toolbox.h"
#include "document/page/Page.h"
#include "host/qt/PropertyFrameDialog.h"
#include "host/registration/classes.h"
#include "tests/editor/EditorTest.h"
#include "tests/forms/FakeRecordset.h"

namespace kvo::editor {
namespace {

std::string SavedPrint(const std::string& id, const std::string& value) {
  return "<!--KVO CONTROL STARTSPAN 1 <object classid=\"progid:KVOPDesignObjects.DTCPrint\" id=\"" +
         id + "\"><param name=\"value\" value=\"" + value +
         "\"><param name=\"format\" value=\"\"></object>--><kv:print value=\"" + value +
         "\"/><!--KVO CONTROL ENDSPAN 1-->";
}

class WindowTest : public testing::Test {
 protected:
  WindowTest() : window(desk.NewWindow()) {}

  // Opens a page with these bytes.
  void Open(const std::string& bytes, const QString& name = "seite.html") {
    ASSERT_TRUE(window->Work().Open(desk.Put(name, bytes)));
  }
  std::string Bytes() const { return window->Page().Content().Bytes(); }
  SourceEdit& Source() { return window->Source(); }
  void Type(const QString& text) { QTest::keyClicks(&Source(), text); }
  void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&Source(), static_cast<Qt::Key>(key), modifiers);
  }
  // Runs `edit` with the property frame that Enter opens for the selected control.
  void InPages(const std::function<void(PropertyFrameDialog& frame)>& edit) {
    bool seen = false;
    WithDialogs(
        [&](QWidget& dialog) {
          auto* frame = dynamic_cast<PropertyFrameDialog*>(&dialog);
          ASSERT_NE(frame, nullptr);
          seen = true;
          edit(*frame);
        },
        [&] { Press(Qt::Key_Return); });
    EXPECT_TRUE(seen);
  }

  Desk desk;
  std::unique_ptr<MainWindow> window;
};

// --- files ---

TEST_F(WindowTest, AnUntouchedPageIsSavedUnchanged) {
  const std::string pages[] = {"",
                               "a\r\nb\nc\r",
                               "\xEF\xBB\xBFx\xFF\n" + Print("a", "1") + "\r\n",
                               "<meta charset=\"windows-1252\">\xE4\x81" + Print("a", "\x80"),
                               SavedPrint("a", "1") + "<!--KVO CONTROL ENDSPAN 7-->",
                               std::string("\0\0", 2)};
  for (const std::string& page : pages) {
    Open(page);
    EXPECT_TRUE(window->Work().Save());
    EXPECT_EQ(desk.Bytes("seite.html"), page);
    EXPECT_TRUE(window->Work().SaveAs(desk.Path("kopie.html")));
    EXPECT_EQ(desk.Bytes("kopie.html"), page);
  }
}

TEST_F(WindowTest, SavingWritesTheRuntimeTextAndNothingElse) {
  Open("<p>\r\n" + Print("a", "1") + "\n\xFF</p>");
  Type("!");
  EXPECT_TRUE(window->isWindowModified());
  Press(Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(desk.Bytes("seite.html"), "!<p>\r\n" + SavedPrint("a", "1") + "\n\xFF</p>");
  EXPECT_EQ(Bytes(), desk.Bytes("seite.html"));
  EXPECT_FALSE(window->isWindowModified());
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Bytes(), "<p>\r\n" + Print("a", "1") + "\n\xFF</p>");
  EXPECT_TRUE(window->isWindowModified());
}

TEST_F(WindowTest, PublishingWritesOnlyTheRuntimeText) {
  Open("<p>" + Print("a", "1") + "</p>");
  EXPECT_TRUE(window->Work().Publish(desk.Path("fertig.html")));
  EXPECT_EQ(desk.Bytes("fertig.html"), "<p><kv:print value=\"1\"/></p>");
  WithDialogs([](QWidget& dialog) { dialog.close(); },
              [&] { EXPECT_FALSE(window->Work().Publish(desk.Path("seite.html"))); });
  EXPECT_EQ(desk.Bytes("seite.html"), "<p>" + Print("a", "1") + "</p>");
}

TEST_F(WindowTest, ATemplateBecomesANewPage) {
  std::map<std::string, std::string> templates;  // by title
  for (const auto& entry :
       std::filesystem::directory_iterator(KVO_SOURCE_DIR "/examples/templates")) {
    if (entry.path().extension() != ".html") continue;
    std::ifstream in(entry.path(), std::ios::binary);
    const std::string page{std::istreambuf_iterator<char>(in), {}};
    const std::size_t title = page.find("<title>") + 7;
    templates[page.substr(title, page.find("</title>") - title)] = page;
  }
  ASSERT_EQ(templates.size(), 4U);
  int down = 0;
  for (const auto& [title, page] : templates) {
    SCOPED_TRACE(title);
    Open("alt");
    // Opens the menu with its access keys and moves down to the entry.
    Press(Qt::Key_D, Qt::AltModifier);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_L);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    ASSERT_EQ(menu->actions().size(), static_cast<qsizetype>(templates.size()));
    EXPECT_EQ(menu->actions()[down]->text().toStdString(), title);
    for (int press = 0; press < down; ++press) QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
    ++down;
    EXPECT_EQ(Bytes(), page);
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_EQ(window->Work().File().Name(), "");
    // Saving writes a separate file.
    Type("!");
    EXPECT_TRUE(window->Work().SaveAs(desk.Path("neu.html")));
    EXPECT_EQ(desk.Bytes("neu.html"), "!" + page);
  }
}

TEST_F(WindowTest, AnUnreadableFileIsReportedAndThePageStays) {
  Open("alt");
  QString said;
  WithDialogs(
      [&](QWidget& dialog) {
        said = static_cast<QMessageBox&>(dialog).text();
        dialog.close();
      },
      [&] { EXPECT_FALSE(window->Work().Open(desk.Path("fehlt.html"))); });
  EXPECT_TRUE(said.contains("fehlt.html")) << said.toStdString();
  EXPECT_EQ(Bytes(), "alt");
  WithDialogs(
      [&](QWidget& dialog) { dialog.close(); },
      [&] {
        EXPECT_FALSE(window->Work().Open(desk.Put("utf16.html", std::string("\xFF\xFEx\0", 4))));
      });
  EXPECT_EQ(Bytes(), "alt");
}

TEST_F(WindowTest, ErrorsPreventRuntimeTextsButNotSaving) {
  const std::string broken =
      "<object classid=\"progid:KVOPDesignObjects.DTCPrnt\"></object>" + Print("a", "1");
  Open(broken);
  Type("!");
  WithDialogs([](QWidget& dialog) { PressButton(dialog, "Probleme zeigen"); },
              [&] { EXPECT_FALSE(window->Work().Save()); });
  EXPECT_EQ(desk.Bytes("seite.html"), broken);
  EXPECT_TRUE(window->isWindowModified());
  WithDialogs([](QWidget& dialog) { PressButton(dialog, "Trotzdem speichern"); },
              [&] { EXPECT_TRUE(window->Work().Save()); });
  EXPECT_EQ(desk.Bytes("seite.html"), "!" + broken);
  EXPECT_FALSE(window->isWindowModified());
}

TEST_F(WindowTest, HandEditedTextIsOverwrittenOnlyWithConsent) {
  std::string page = SavedPrint("a", "1");
  page.replace(page.find("<kv:print"), 9, "<xy:print");
  Open(page);
  Press(Qt::Key_End);
  Type("!");
  WithDialogs([](QWidget& dialog) { PressButton(dialog, "Handgeändertes überschreiben"); },
              [&] { EXPECT_TRUE(window->Work().Save()); });
  EXPECT_EQ(desk.Bytes("seite.html"), SavedPrint("a", "1") + "!");
}

TEST_F(WindowTest, UnsavedChangesAreNotDroppedWithoutAsking) {
  Open("alt");
  Type("neu ");
  WithDialogs([](QWidget& dialog) { PressButton(dialog, "Abbrechen"); },
              [&] { window->Work().New(); });
  EXPECT_EQ(Bytes(), "neu alt");
  WithDialogs([](QWidget& dialog) { PressButton(dialog, "Speichern"); },
              [&] { window->Work().New(); });
  EXPECT_EQ(desk.Bytes("seite.html"), "neu alt");
  EXPECT_TRUE(window->Work().File().Name().isEmpty());
}

TEST_F(WindowTest, AFileChangedOnDiskIsNoticed) {
  Open("eins");
  desk.Put("seite.html", "zwei");
  WithDialogs([](QWidget& dialog) { PressButton(dialog, "Neu laden"); },
              [&] { EXPECT_TRUE(WaitFor([&] { return Bytes() == "zwei"; })); });
  Type("!");
  // Replaces the file with a new one, as most programs do on saving.
  std::filesystem::rename(desk.Put("neu.html", "drei").toStdString(),
                          desk.Path("seite.html").toStdString());
  bool asked = false;
  WithDialogs(
      [&](QWidget& dialog) {
        asked = true;
        PressButton(dialog, "Behalten");
      },
      [&] { EXPECT_TRUE(WaitFor([&] { return asked; })); });
  EXPECT_EQ(Bytes(), "!zwei");
  EXPECT_TRUE(window->Work().Save());  // the question was already answered
  EXPECT_EQ(desk.Bytes("seite.html"), "!zwei");
}

// --- controls in the source ---

TEST_F(WindowTest, AControlIsAtomicForCaretAndDeletion) {
  Open("a" + Print("x", "1") + "b" + Print("y", "2"));
  Press(Qt::Key_Right);
  Press(Qt::Key_Right);
  EXPECT_EQ(Source().textCursor().position(), 2);
  Press(Qt::Key_Backspace);
  EXPECT_EQ(Bytes(), "ab" + Print("y", "2"));
  EXPECT_EQ(window->Page().UndoName(), "Löschen");
  Press(Qt::Key_End);
  Press(Qt::Key_Left, Qt::ShiftModifier);
  EXPECT_EQ(Source().CurrentControl(), 2);
  Press(Qt::Key_Delete);
  EXPECT_EQ(Bytes(), "ab");
  Press(Qt::Key_Z, Qt::ControlModifier);
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Bytes(), "a" + Print("x", "1") + "b" + Print("y", "2"));
}

TEST_F(WindowTest, AClickSelectsABox) {
  Open("Text " + Print("x", "1") + " Text");
  QTextCursor cursor(Source().document());
  cursor.setPosition(5);
  const QPoint point = Source().cursorRect(cursor).center() + QPoint(15, 0);
  QTest::mouseClick(Source().viewport(), Qt::LeftButton, {}, point);
  EXPECT_EQ(Source().textCursor().selectionStart(), 5);
  EXPECT_EQ(Source().textCursor().selectionEnd(), 6);
}

TEST_F(WindowTest, EnterOpensThePagesAndOkIsOneNamedStep) {
  Open("x" + Print("Preis", "alt"));
  Source().SelectControl(1);
  InPages([&](PropertyFrameDialog& frame) {
    auto* value = frame.findChild<QLineEdit*>("txtValue");
    ASSERT_NE(value, nullptr);
    value->setFocus();
    value->selectAll();
    QTest::keyClicks(value, "neu");
    PressButton(frame, "Übernehmen");
    EXPECT_EQ(window->Page().UndoName(), "Eigenschaften von Preis");
    QTest::keyClicks(value, "er");
    PressButton(frame, "OK");
  });
  EXPECT_EQ(Bytes(), "x" + SavedPrint("Preis", "neuer"));
  EXPECT_EQ(Source().CurrentControl(), 1);
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Bytes(), "x" + SavedPrint("Preis", "neu"));
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Bytes(), "x" + Print("Preis", "alt"));
}

TEST_F(WindowTest, CancelledPagesChangeNothing) {
  Open(Print("Preis", "alt"));
  Source().SelectControl(0);
  InPages([&](PropertyFrameDialog& frame) {
    QTest::keyClicks(frame.findChild<QLineEdit*>("txtValue"), "verworfen");
    PressButton(frame, "Abbrechen");
  });
  EXPECT_EQ(Bytes(), Print("Preis", "alt"));
  EXPECT_FALSE(window->isWindowModified());
}

TEST_F(WindowTest, ADoubleClickIsHandledByTheControlFirst) {
  desk.Put("office.json",
           R"({"contactFields":[{"sqlName":"City","displayName":"Ort","dataType":0}]})");
  Open("<object classid=\"progid:KVOPDesignObjects.DTCContact\" id=\"Ort\"></object>");
  std::vector<QString> shown;
  WithDialogs(
      [&](QWidget& dialog) {
        if (auto* box = qobject_cast<QMessageBox*>(&dialog)) {
          shown.push_back(box->text());
          return PressButton(dialog, "OK");
        }
        shown.push_back(dialog.windowTitle());
        auto* fields = dialog.findChild<QComboBox*>();
        ASSERT_NE(fields, nullptr);
        ASSERT_EQ(fields->count(), 1);
        fields->setFocus();
        QTest::keyClick(fields, Qt::Key_Down);
        PressButton(dialog, "OK");
      },
      [&] { Source().onOpenControl(0, true); });
  EXPECT_EQ(shown, (std::vector<QString>{"yo", "Kontaktfeld"}));
  EXPECT_NE(Bytes().find("<param name=\"field\" value=\"City\">"), std::string::npos) << Bytes();
  EXPECT_EQ(window->Page().UndoName(), "Eigenschaften von Ort");
}

TEST_F(WindowTest, CopiesGetNewIdsAndOtherProgramsTheRuntimeText) {
  Open("<b>" + Print("Preis", "1") + "</b>\r\n");
  Press(Qt::Key_End, Qt::ShiftModifier);
  Press(Qt::Key_C, Qt::ControlModifier);
  const QMimeData* copied = QApplication::clipboard()->mimeData();
  EXPECT_EQ(copied->text(), "<b><kv:print value=\"1\"/></b>");
  Press(Qt::Key_End);
  Press(Qt::Key_V, Qt::ControlModifier);
  Press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Bytes(), "<b>" + Print("Preis", "1") + "</b><b>" + Print("Preis2", "1") + "</b><b>" +
                         Print("Preis3", "1") + "</b>\r\n");
  EXPECT_EQ(window->Page().UndoName(), "Einfügen");
  const auto other = desk.NewWindow();
  other->Source().selectAll();
  other->Source().paste();
  EXPECT_EQ(other->Page().Content().Bytes(), "<b>" + Print("Preis", "1") + "</b>");
}

TEST_F(WindowTest, CuttingAndPastingKeepsTheId) {
  Open("a" + Print("Preis", "1") + "b");
  Source().SelectControl(1);
  Press(Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(Bytes(), "ab");
  EXPECT_EQ(window->Page().UndoName(), "Ausschneiden");
  Press(Qt::Key_End);
  Press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Bytes(), "ab" + Print("Preis", "1"));
}

TEST_F(WindowTest, PastedMarkupBecomesAControl) {
  Open("");
  QApplication::clipboard()->setText(QString::fromStdString("x" + Print("p", "1")));
  Press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_TRUE(window->Page().IsControl(1));
}

TEST_F(WindowTest, TypedMarkupBecomesAControlOnRequest) {
  Open("ä\r\n");
  Type(QString::fromStdString(Print("p", "1")));
  EXPECT_FALSE(window->Page().IsControl(0));
  for (QAction* action : window->findChildren<QAction*>())
    if (action->text().remove('&') == "Controls im Text erkennen") action->trigger();
  EXPECT_TRUE(window->Page().IsControl(0));
  EXPECT_EQ(Bytes(), Print("p", "1") + "ä\r\n");
  EXPECT_EQ(window->Page().UndoName(), "Controls im Text erkennen");
}

// --- the panels ---

TEST_F(WindowTest, TheToolboxInsertsAtTheCaretWithANewId) {
  Open("ab");
  Press(Qt::Key_Right);
  Press(Qt::Key_T, Qt::ControlModifier);
  auto* search = window->Tools().findChild<QLineEdit*>();
  ASSERT_TRUE(search->hasFocus());
  QTest::keyClicks(search, "ausdr");
  QTest::keyClick(search, Qt::Key_Return);
  EXPECT_TRUE(Source().hasFocus());
  EXPECT_EQ(Source().CurrentControl(), 1);
  EXPECT_FALSE(Source().textCursor().hasSelection());
  EXPECT_EQ(Source().textCursor().position(), 2);
  EXPECT_EQ(window->Page().UndoName(), "Ausdruck einfügen");
  const auto look = window->Page().LookAt(1);
  ASSERT_NE(look, nullptr);
  EXPECT_EQ(look->contract->name, "DTCPrint");
  EXPECT_EQ(look->id, "Print1");
}

TEST_F(WindowTest, TypingAfterANewControlKeepsIt) {
  Open("ab");
  Press(Qt::Key_Right);
  window->Tools().onInsert(0);
  const std::string inserted = Bytes();
  ASSERT_TRUE(window->Page().IsControl(1));
  Type("x");
  EXPECT_EQ(window->Page().Content().Text(), QString("a") + kEmbeddedCharacter + "xb");
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Bytes(), inserted);
  // Enter is no longer the first key after the insertion, so it is a line break.
  Press(Qt::Key_Return);
  EXPECT_EQ(window->Page().Content().Text(),
            QString("a") + kEmbeddedCharacter + kLineBreakCharacter + "b");
}

TEST_F(WindowTest, EnterOpensThePagesOfANewControlAndOkPutsTheCaretAfterIt) {
  Open("ab");
  Press(Qt::Key_Right);
  window->Tools().onInsert(0);
  InPages([&](PropertyFrameDialog& frame) {
    QTest::keyClicks(frame.findChild<QLineEdit*>("txtValue"), "neu");
    PressButton(frame, "OK");
  });
  EXPECT_FALSE(Source().textCursor().hasSelection());
  EXPECT_EQ(Source().textCursor().position(), 2);
  Type("\tx");
  EXPECT_EQ(window->Page().Content().Text(), QString("a") + kEmbeddedCharacter + "\txb");
  EXPECT_EQ(window->RuntimeText().toPlainText(), "");
  Source().SelectControl(1);
  EXPECT_EQ(window->RuntimeText().toPlainText(), "<kv:print value=\"neu\"/>");
  // The same for a control that was selected before, whereas a cancelled page keeps the selection.
  InPages([](PropertyFrameDialog& frame) { PressButton(frame, "Abbrechen"); });
  EXPECT_TRUE(Source().textCursor().hasSelection());
  InPages([](PropertyFrameDialog& frame) { PressButton(frame, "OK"); });
  EXPECT_FALSE(Source().textCursor().hasSelection());
  EXPECT_EQ(Source().textCursor().position(), 2);
}

TEST_F(WindowTest, ASearchForAToolStartsOver) {
  Open("");
  auto* search = window->Tools().findChild<QLineEdit*>();
  auto* list = window->Tools().findChild<QListWidget*>();
  Press(Qt::Key_T, Qt::ControlModifier);
  QTest::keyClicks(search, "skript");
  QTest::keyClick(search, Qt::Key_Return);
  EXPECT_EQ(window->Page().LookAt(0)->contract->name, "DTCScript");
  Press(Qt::Key_T, Qt::ControlModifier);
  EXPECT_TRUE(search->hasFocus());
  EXPECT_EQ(search->text(), "");
  EXPECT_EQ(list->currentRow(), 1);  // below the first heading
  for (int row = 0; row < list->count(); ++row) EXPECT_FALSE(list->item(row)->isHidden()) << row;
}

TEST_F(WindowTest, EachBuiltInToolSetsAUniqueTagName) {
  ASSERT_EQ(window->Tools().Tools().size(), RegisteredControls().size());
  std::set<std::string> names;
  for (const Tool& tool : window->Tools().Tools()) {
    const std::string name = ToText(page::Load(*tool.contract, tool.bag)->Get("basename"));
    EXPECT_TRUE(names.insert(name).second) << name;
    EXPECT_EQ(name, tool.contract->TagName());
  }
}

TEST_F(WindowTest, EveryClassHasItsTool) {
  const auto& tools = window->Tools().Tools();
  EXPECT_EQ(tools.size(), 12U);
  for (std::size_t tool = 0; tool < tools.size(); ++tool) {
    EXPECT_FALSE(tools[tool].description.empty());
    EXPECT_FALSE(IconOf(*tools[tool].contract).pixmap(24).isNull()) << tools[tool].caption;
    window->Tools().onInsert(static_cast<int>(tool));
  }
  EXPECT_FALSE(page::HasErrors(page::Check(page::Page(Bytes()))));
}

TEST_F(WindowTest, AToolDroppedOnTheSourceIsInsertedThere) {
  Open("abc");
  Press(Qt::Key_Right);
  auto* data = new QMimeData;
  data->setData(kToolType, "0");
  QTextCursor cursor(Source().document());
  cursor.setPosition(3);
  const QPoint point = Source().cursorRect(cursor).center();
  QDragEnterEvent enter(point, Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(Source().viewport(), &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(point, Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(Source().viewport(), &drop);
  EXPECT_TRUE(window->Page().IsControl(3));
  delete data;
}

TEST_F(WindowTest, AShopBringsItsOwnTools) {
  desk.Put("toolbox.json", R"({"tools":[{"class":"DTCPrint","caption":"Preis brutto",
    "bag":{"namespace":"shop","value":"#order.total#"}}]})");
  Open("");
  ASSERT_EQ(window->Tools().Tools().size(), 1U);
  window->Tools().onInsert(0);
  EXPECT_NE(Bytes().find("<param name=\"namespace\" value=\"shop\">"), std::string::npos);
  EXPECT_NE(Bytes().find("value=\"#order.total#\""), std::string::npos);
}

QTreeWidget& Rows(PropertyBrowser& browser) { return *browser.findChild<QTreeWidget*>(); }

QTreeWidgetItem& Row(PropertyBrowser& browser, const QString& name) {
  return *Rows(browser).findItems(name, Qt::MatchExactly).at(0);
}

// --- property pages: the user's edits are applied, whether or not the page marks itself ---

TEST_F(WindowTest, ATypedTableWidthIsKept) {
  Open("<object classid=\"progid:KVOPDesignObjects.DTCProductList\" id=\"l\"></object>");
  Source().SelectControl(0);
  InPages([&](PropertyFrameDialog& frame) {
    QTest::keyClicks(frame.findChild<QLineEdit*>("txtTableWidth"), "9");
    PressButton(frame, "OK");
  });
  EXPECT_NE(Bytes().find("<param name=\"table-width\" value=\"9\">"), std::string::npos) << Bytes();
  EXPECT_EQ(window->Page().UndoName(), "Eigenschaften von l");
}

TEST_F(WindowTest, ProductsAddedByTheButtonAreKept) {
  FakeTable products;
  for (const char* number : {"A1", "A2", "A3"})
    products.rows.push_back({{"ProductNo", number}, {"Desc1", "Name"}, {"Desc2", ""}});
  desk.platform.recordsets = [&] { return std::make_shared<FakeRecordset>(products); };
  desk.connections = [](const std::string&) { return std::make_shared<FakeConnection>(); };
  window = desk.NewWindow();
  desk.Put("office.json", R"({"shopDatabase":"sqlite3://shop.db"})");
  Open("<object classid=\"progid:KVOPDesignObjects.DTCProductList\" id=\"l\"></object>");
  Source().SelectControl(0);
  InPages([&](PropertyFrameDialog& frame) {
    auto* tabs = frame.findChild<QTabWidget*>();
    QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, {},
                      tabs->tabBar()->tabRect(tabs->count() - 1).center());
    auto* rows = frame.findChild<QTableView*>("gdProducts");
    ASSERT_NE(rows, nullptr);
    ASSERT_EQ(rows->model()->rowCount({}), 3);
    const auto click = [&](int row, Qt::KeyboardModifiers modifiers) {
      QTest::mouseClick(rows->viewport(), Qt::LeftButton, modifiers,
                        rows->visualRect(rows->model()->index(row, 0)).center());
    };
    click(0, {});
    click(2, Qt::ControlModifier);
    EXPECT_FALSE(frame.findChild<QPushButton*>("cmdApply")->isEnabled());
    QTest::mouseClick(frame.findChild<QPushButton*>("cmdAddProduct"), Qt::LeftButton);
    EXPECT_TRUE(frame.findChild<QPushButton*>("cmdApply")->isEnabled());
    PressButton(frame, "OK");
  });
  EXPECT_NE(Bytes().find("value=\"A1,A3\""), std::string::npos) << Bytes();
  window.reset();
}

// --- property pages without fields ---

QString NoteOf(const PropertyFrameDialog& frame) {
  const auto* note = frame.findChild<QLabel*>("note");
  return note != nullptr && note->isVisible() ? note->text() : QString();
}

TEST_F(WindowTest, PagesWithoutFieldsSayWhy) {
  const std::string contact =
      "<object classid=\"progid:KVOPDesignObjects.DTCContact\" id=\"c\"></object>";
  const auto note = [&] {
    QString said;
    Source().SelectControl(0);
    InPages([&](PropertyFrameDialog& frame) {
      said = NoteOf(frame);
      PressButton(frame, "Abbrechen");
    });
    return said;
  };
  Open(contact);
  EXPECT_TRUE(note().contains("office.json")) << note().toStdString();
  EXPECT_TRUE(note().contains("Office-Datei wählen"));
  // Opens it by a double click, which the control itself handles.
  QString said;
  WithDialogs(
      [&](QWidget& dialog) {
        if (auto* frame = dynamic_cast<PropertyFrameDialog*>(&dialog)) said = NoteOf(*frame);
        PressButton(dialog, dynamic_cast<PropertyFrameDialog*>(&dialog) ? "Abbrechen" : "OK");
      },
      [&] { Source().onOpenControl(0, true); });
  EXPECT_TRUE(said.contains("office.json"));

  desk.Put("office.json", "{}");
  Open(contact);
  EXPECT_TRUE(note().contains("nennt keine")) << note().toStdString();
  desk.Put("office.json",
           R"({"contactFields":[{"sqlName":"City","displayName":"Ort","dataType":0}]})");
  Open(contact);
  EXPECT_EQ(note(), "");
  // This control needs no office.
  ASSERT_TRUE(QFile::remove(desk.Path("office.json")));
  Open(Print("Preis", "1"));
  EXPECT_EQ(note(), "");
}

TEST_F(WindowTest, ThePropertyBrowserEditsAnyProperty) {
  Open(Print("Preis", "1"));
  Source().SelectControl(0);
  QTreeWidget& rows = Rows(window->Properties());
  QTreeWidgetItem& value = Row(window->Properties(), "Ausdruck");
  EXPECT_EQ(value.text(1), "1");
  EXPECT_TRUE(value.font(1).bold());
  QTreeWidgetItem& display = Row(window->Properties(), "Beschriftung");
  EXPECT_FALSE(display.font(1).bold());
  rows.setFocus();
  rows.setCurrentItem(&display);
  QTest::keyClick(&rows, Qt::Key_Return);
  auto* line = rows.findChild<QLineEdit*>();
  ASSERT_NE(line, nullptr);
  EXPECT_EQ(line->accessibleName(), "Beschriftung");
  QTest::keyClicks(line, "Gesamt");
  QTest::keyClick(line, Qt::Key_Return);
  EXPECT_TRUE(
      WaitFor([&] { return window->Page().UndoName() == "Beschriftung von Preis ändern"; }));
  EXPECT_TRUE(Row(window->Properties(), "Beschriftung").font(1).bold());
  PressButton(window->Properties(), "Zurücksetzen");
  EXPECT_EQ(Bytes(), SavedPrint("Preis", "1"));
  EXPECT_FALSE(Row(window->Properties(), "Beschriftung").font(1).bold());
}

TEST_F(WindowTest, ARefusedValueIsReportedAndTheOldOneStays) {
  Open("<object classid=\"progid:KVOPDesignObjects.DTCProductList\" id=\"l\"></object>");
  Source().SelectControl(0);
  QString said;
  WithDialogs(
      [&](QWidget& dialog) {
        said = static_cast<QMessageBox&>(dialog).text();
        dialog.close();
      },
      [&] { window->Properties().onLet("DisplayColumns", "viele"); });
  EXPECT_TRUE(said.contains("viele")) << said.toStdString();
  EXPECT_FALSE(window->isWindowModified());
}

TEST_F(WindowTest, RuntimeTextAndProblemsFollow) {
  Open(Print("a", "1") + "<object classid=\"progid:KVOPDesignObjects.DTCPrnt\"></object>");
  Source().SelectControl(0);
  EXPECT_EQ(window->RuntimeText().toPlainText(), "<kv:print value=\"1\"/>");
  ASSERT_TRUE(WaitForViews(*window));
  ASSERT_EQ(window->Analysed()->problems.size(), 1U);
  EXPECT_EQ(window->Analysed()->problems[0].position, 1);
  ASSERT_EQ(window->Analysed()->outline.size(), 2U);
  EXPECT_TRUE(window->Analysed()->outline[0].boxed);
  EXPECT_FALSE(window->Analysed()->outline[1].boxed);
  ProblemsPanel* problems = &window->Problems();
  Q_EMIT problems->activated(problems->model()->index(0, 0));
  EXPECT_EQ(Source().textCursor().position(), 1);
  EXPECT_TRUE(Source().hasFocus());
}

// In the file, each control spans several lines.
TEST_F(WindowTest, ProblemsUseTheLinesOfTheSourceView) {
  const std::string wrong = "<object classid=\"progid:KVOPDesignObjects.DTCPrnt\"></object>";
  const std::string lines =
      "<object classid=\"progid:KVOPDesignObjects.DTCPrint\">\n"
      "<param name=\"value\"\nvalue=\"1\">\n</object>";
  Open(lines + "\r\n" + lines + "\näö" + lines + wrong);
  Type("!");
  ASSERT_TRUE(WaitForViews(*window));
  ASSERT_EQ(window->Analysed()->problems.size(), 1U);
  const QAbstractItemModel& problems = *window->Problems().model();
  EXPECT_EQ(problems.index(0, 0).data().toString(), "3:4");
  Q_EMIT window->Problems().activated(problems.index(0, 0));
  EXPECT_EQ(Source().textCursor().blockNumber(), 2);
  EXPECT_EQ(Source().textCursor().positionInBlock(), 3);
  QString said;
  WithDialogs(
      [&](QWidget& dialog) {
        said = static_cast<QMessageBox&>(dialog).text();
        PressButton(dialog, "Probleme zeigen");
      },
      [&] { EXPECT_FALSE(window->Work().Save()); });
  EXPECT_TRUE(said.contains("3:4: Fehler: ")) << said.toStdString();
}

TEST_F(WindowTest, PublishingReportsTheErrorsAndShowsThem) {
  Open("\n<object classid=\"progid:KVOPDesignObjects.DTCPrnt\"></object>");
  QString said;
  WithDialogs(
      [&](QWidget& dialog) {
        said = static_cast<QMessageBox&>(dialog).text();
        PressButton(dialog, "OK");
      },
      [&] { EXPECT_FALSE(window->Work().Publish(desk.Path("fertig.html"))); });
  EXPECT_TRUE(said.contains("2:1: Fehler: DTCPrnt: ")) << said.toStdString();
  EXPECT_FALSE(QFile::exists(desk.Path("fertig.html")));
  EXPECT_TRUE(window->Problems().isVisible());
}

TEST_F(WindowTest, AClickInAListShowsThePlaceAndEnterGoesThere) {
  Open("\n" + Print("a", "1") + "\n\n" + Print("b", "2"));
  ASSERT_TRUE(WaitForViews(*window));
  auto* outline = window->findChild<QDockWidget*>("outline")->findChild<QTreeView*>();
  const auto click = [&](int row) {
    QTest::mouseClick(outline->viewport(), Qt::LeftButton, {},
                      outline->visualRect(outline->model()->index(row, 0)).center());
  };
  click(1);
  EXPECT_EQ(Source().CurrentControl(), 4);
  EXPECT_TRUE(outline->hasFocus());
  QTest::keyClick(outline, Qt::Key_Up);
  EXPECT_TRUE(outline->hasFocus());
  QTest::keyClick(outline, Qt::Key_Return);
  EXPECT_EQ(Source().CurrentControl(), 1);
  EXPECT_TRUE(Source().hasFocus());
}

TEST_F(WindowTest, TheFirstWindowFitsTheScreen) {
  const QRect room = window->screen()->availableGeometry();
  EXPECT_TRUE(room.contains(window->frameGeometry())) << window->width() << 'x' << window->height();
  // Fits a small notebook, including the window frame.
  EXPECT_LE(window->minimumSizeHint().width(), 1000);
  EXPECT_LE(window->minimumSizeHint().height(), 560);
}

// Returns the text that a tool tip shows, which renders markup.
QString Rendered(const QString& toolTip) {
  if (!Qt::mightBeRichText(toolTip)) return toolTip;
  QTextDocument document;
  document.setHtml(toolTip);
  return document.toPlainText();
}

TEST_F(WindowTest, TextsOfAPageAreNeverRendered) {
  const QString markup = "<img src='file:bild.png'><b>fett</b>";
  const std::string escaped = "&lt;img src='file:bild.png'>&lt;b>fett&lt;/b>";
  Open(Print(escaped, escaped) + "<object classid=\"progid:KVOPDesignObjects.DTCPrint\" id=\"b\">" +
           "<param name=\"" + escaped + "\" value=\"\"></object>",
       "<b>seite<b>.html");
  Source().SelectControl(0);
  EXPECT_EQ(Rendered(Row(window->Properties(), "Ausdruck").toolTip(1)), markup);

  ASSERT_TRUE(WaitForViews(*window));
  ASSERT_EQ(window->Analysed()->problems.size(), 1U);
  const QAbstractItemModel& problems = *window->Problems().model();
  EXPECT_TRUE(Rendered(problems.index(0, 2).data(Qt::ToolTipRole).toString()).contains(markup));

  // Checked before there is a tool tip, because that is also a label of the window.
  for (const QLabel* label : window->findChildren<QLabel*>())
    EXPECT_TRUE(label->textFormat() == Qt::PlainText || !Qt::mightBeRichText(label->text()))
        << label->text().toStdString();

  QTextCursor cursor(Source().document());
  const QPoint box = Source().cursorRect(cursor).center() + QPoint(15, 0);
  QHelpEvent help(QEvent::ToolTip, Source().viewport()->mapTo(&Source(), box),
                  Source().viewport()->mapToGlobal(box));
  QApplication::sendEvent(&Source(), &help);
  EXPECT_TRUE(Rendered(QToolTip::text()).contains(markup)) << QToolTip::text().toStdString();
  QToolTip::hideText();

  Type("!");
  WithDialogs(
      [&](QWidget& dialog) {
        EXPECT_TRUE(static_cast<QMessageBox&>(dialog).text().contains("<b>seite<b>.html"));
        EXPECT_EQ(static_cast<QMessageBox&>(dialog).textFormat(), Qt::PlainText);
        PressButton(dialog, "Abbrechen");
      },
      [&] { window->Work().New(); });
}

TEST_F(WindowTest, TheOutputPanelShowsWhatPublishingWrites) {
  Open("<p>ä\r\n" + Print("a", "1"));
  TextPanel* output = &window->Output();
  window->findChild<QDockWidget*>("output")->show();
  ASSERT_TRUE(WaitForViews(*window));
  EXPECT_TRUE(WaitFor([&] { return output->toPlainText() == "<p>ä\n<kv:print value=\"1\"/>"; }));
  Type("<b>");
  EXPECT_TRUE(WaitFor([&] { return output->toPlainText() == "<b><p>ä\n<kv:print value=\"1\"/>"; }));
}

TEST_F(WindowTest, FindsAndReplaces) {
  Open("Tee tee TEE " + Print("a", "Tee") + " tee");
  Press(Qt::Key_H, Qt::ControlModifier);
  FindBar* bar = &window->Finder();
  QLineEdit* find = bar->findChild<QLineEdit*>("find");
  QLineEdit* replace = bar->findChild<QLineEdit*>("replace");
  ASSERT_TRUE(find->hasFocus());
  QTest::keyClicks(find, "tee");
  QTest::keyClick(find, Qt::Key_Return);
  EXPECT_EQ(Source().textCursor().selectionStart(), 0);
  QTest::keyClick(find, Qt::Key_Return);
  EXPECT_EQ(Source().textCursor().selectionStart(), 4);
  QTest::keyClicks(replace, "Kaffee");
  PressButton(*bar, "Alle ersetzen");
  EXPECT_EQ(Bytes(), "Kaffee Kaffee Kaffee " + Print("a", "Tee") + " Kaffee");
  EXPECT_EQ(window->Page().UndoName(), "4 Stellen ersetzen");
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Bytes(), "Tee tee TEE " + Print("a", "Tee") + " tee");
}

TEST_F(WindowTest, AReplacementKeepsTheControlsInItsGroups) {
  Open("<b>" + Print("a", "1") + "</b>");
  Press(Qt::Key_H, Qt::ControlModifier);
  FindBar* bar = &window->Finder();
  QTest::keyClicks(bar->findChild<QLineEdit*>("find"), "<b>(.*)</b>");
  QTest::keyClicks(bar->findChild<QLineEdit*>("replace"), "<i>\\1!\\1</i>");
  for (QCheckBox* box : bar->findChildren<QCheckBox*>()) box->setChecked(true);
  PressButton(*bar, "Alle ersetzen");
  EXPECT_EQ(Bytes(), "<i>" + Print("a", "1") + "!" + Print("a", "1") + "</i>");
}

TEST_F(WindowTest, EveryPanelIsReachableByKeyboard) {
  Open(Print("a", "1"));
  Source().SelectControl(0);
  Source().setFocus();
  std::set<const QWidget*> reached;
  for (int press = 0; press < 8; ++press) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6);
    for (const QWidget* at = QApplication::focusWidget(); at; at = at->parentWidget())
      reached.insert(at);
  }
  for (const QWidget* panel : std::initializer_list<const QWidget*>{
           &Source(), &window->Design(), &window->Tools(), &window->Properties()})
    EXPECT_TRUE(reached.contains(panel)) << panel->accessibleName().toStdString();
}

}  // namespace
}  // namespace kvo::editor
