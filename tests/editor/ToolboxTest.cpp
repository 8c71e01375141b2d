// The toolbox: groups, and a search that also finds the office's fields.
#include "apps/editor/Toolbox.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QDropEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>

#include "document/page/Page.h"
#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

constexpr char kFields[] = R"({
  "contactFields": [
    {"sqlName": "FirstName", "displayName": "Vorname", "dataType": 0},
    {"sqlName": "LastName", "displayName": "Nachname", "dataType": 0},
    {"sqlName": "Company", "displayName": "Name der Firma", "dataType": 0},
    {"sqlName": "Bare", "displayName": "", "dataType": 0}],
  "orderFields": [
    {"sqlName": "OrderID", "displayName": "Bestellnummer", "dataType": 1},
    {"sqlName": "HandOver", "displayName": "Übergabeart", "dataType": 0}]})";

class ToolboxTest : public testing::Test {
 protected:
  ToolboxTest() : window(desk.NewWindow()) {}

  void Open() { ASSERT_TRUE(window->Work().Open(desk.Put("seite.html", ""))); }
  void OpenWithOffice() {
    desk.Put("office.json", kFields);
    Open();
  }
  // To what has the keyboard.
  static void Type(const QString& text) {
    for (const QChar& character : text)
      QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_unknown,
                          QString(character), Qt::NoModifier);
  }
  static void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
  }
  void Search(const QString& words) {
    Press(Qt::Key_T, Qt::ControlModifier);
    Type(words);
  }

  QListWidget& List() { return *window->Tools().findChild<QListWidget*>(); }
  // The first line of each entry; a heading in brackets.
  QStringList Shown() {
    QStringList shown;
    for (int row = 0; row < List().count(); ++row) {
      const QListWidgetItem* item = List().item(row);
      if (item->isHidden()) continue;
      const QString name = item->text().section('\n', 0, 0);
      shown << (item->flags().testFlag(Qt::ItemIsSelectable) ? name : '[' + name + ']');
    }
    return shown;
  }
  std::string Bytes() const { return window->Page().Content().Bytes(); }
  QString PageText() const { return window->Page().Content().Text(); }
  std::shared_ptr<Control> ControlAt(int position) const {
    return window->Controls().Load(position);
  }
  // "DTCOrder OrderID Bestellnummer", of a field's control.
  std::string FieldAt(int position) const {
    const auto control = ControlAt(position);
    return std::string(control->Class().name) + ' ' + ToText(control->Get("Field")) + ' ' +
           ToText(control->Get("DisplayValue"));
  }

  Desk desk;
  std::unique_ptr<MainWindow> window;
};

const QStringList kBuiltIn = {
    "[Felder]",           "Ausdruck",       "Kontaktfeld",    "Bestellfeld",
    "Konfigurationswert", "[Logik]",        "HTML-Element",   "Skript",
    "Wenn/sonst",         "[Shop]",         "Produkttabelle", "Bestellpositionen",
    "[Versand]",          "Gezählter Link", "Öffnungszähler", "Abmeldelink"};

TEST_F(ToolboxTest, AContactFieldIsFourInputs) {
  OpenWithOffice();
  Type("Hallo ");
  Press(Qt::Key_T, Qt::ControlModifier);
  Type("vorname");
  EXPECT_EQ(Shown(), QStringList{"Vorname"});
  Press(Qt::Key_Return);
  EXPECT_EQ(window->Page().UndoName(), "Vorname einfügen");
  Type(",");
  EXPECT_EQ(PageText(), QString("Hallo ") + kEmbeddedCharacter + ",");
  EXPECT_EQ(FieldAt(6), "DTCContact FirstName Vorname");
  EXPECT_EQ(ToText(ControlAt(6)->Get("basename")), "contact");
  EXPECT_EQ(window->Page().LookAt(6)->id, "Contact1");
  EXPECT_EQ(ControlAt(6)->GetRuntimeText(), "<kv:contact field=\"FirstName\"/>");
  Press(Qt::Key_Z, Qt::ControlModifier);
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(PageText(), "Hallo ");
}

TEST_F(ToolboxTest, AFieldIsWrittenAsItsPropertyPageWritesIt) {
  OpenWithOffice();
  Search("kontaktfeld");
  Press(Qt::Key_Return);
  WithDialogs(
      [](QWidget& dialog) {
        auto* fields = dialog.findChild<QComboBox*>("cboContactFields");
        ASSERT_NE(fields, nullptr);
        QTest::keyClick(fields, Qt::Key_Down);
        EXPECT_EQ(fields->currentText(), "Vorname");
        PressButton(dialog, "OK");
      },
      [] { Press(Qt::Key_Return); });
  const auto chosen = page::StoredBag(*ControlAt(0));
  window->Page().Document()->setModified(false);
  window->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
  Open();
  Search("Vorname");
  Press(Qt::Key_Return);
  EXPECT_EQ(page::StoredBag(*ControlAt(0)), chosen);
}

TEST_F(ToolboxTest, OrderFieldsAreFoundByBothNamesInAnyCase) {
  OpenWithOffice();
  Search("BESTELLNUM");
  EXPECT_EQ(Shown(), QStringList{"Bestellnummer"});
  Press(Qt::Key_Return);
  Search("übergabe");
  EXPECT_EQ(Shown(), QStringList{"Übergabeart"});
  Press(Qt::Key_Return);
  Search("orderid");
  EXPECT_EQ(Shown(), QStringList{"Bestellnummer"});
  Press(Qt::Key_Return);
  Search("bare");
  Press(Qt::Key_Return);
  EXPECT_EQ(FieldAt(0), "DTCOrder OrderID Bestellnummer");
  EXPECT_EQ(FieldAt(1), "DTCOrder HandOver Übergabeart");
  EXPECT_EQ(FieldAt(2), "DTCOrder OrderID Bestellnummer");
  EXPECT_EQ(FieldAt(3), "DTCContact Bare ");
  EXPECT_EQ(ToText(ControlAt(1)->Get("basename")), "order");
}

TEST_F(ToolboxTest, TheBestHitComesFirst) {
  OpenWithOffice();
  Search("n");
  // Many other names and descriptions contain an "n".
  EXPECT_EQ(Shown().mid(0, 2), (QStringList{"Nachname", "Name der Firma"}));
  EXPECT_EQ(List().currentRow(), 0);
  Type("ame");
  EXPECT_EQ(Shown(), (QStringList{"Name der Firma", "Vorname", "Nachname"}));
  EXPECT_EQ(List().currentRow(), 0);
  Press(Qt::Key_Down);
  EXPECT_TRUE(List().hasFocus());
  Press(Qt::Key_Return);
  EXPECT_EQ(FieldAt(0), "DTCContact FirstName Vorname");
  // The tool, then the fields that match by their description only.
  Search("kontakt");
  EXPECT_EQ(Shown(), (QStringList{"Kontaktfeld", "Vorname", "Nachname", "Name der Firma", "Bare"}));
  Search("bestell");
  EXPECT_EQ(Shown(), (QStringList{"Bestellfeld", "Bestellpositionen", "Bestellnummer",
                                  "Abmeldelink", "Übergabeart"}));
  Search("gibt es nicht");
  EXPECT_EQ(Shown(), QStringList());
}

TEST_F(ToolboxTest, TheMouseInsertsAFieldToo) {
  OpenWithOffice();
  Search("name");
  const QPoint second = List().visualItemRect(List().item(1)).center();
  DoubleClick(*List().viewport(), second);
  EXPECT_EQ(FieldAt(0), "DTCContact FirstName Vorname");

  const std::unique_ptr<QMimeData> dragged(List().model()->mimeData({List().model()->index(0, 0)}));
  const QPoint point = window->Source().cursorRect().center();
  QDragEnterEvent enter(point, Qt::CopyAction, dragged.get(), Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(window->Source().viewport(), &enter);
  QDropEvent drop(point, Qt::CopyAction, dragged.get(), Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(window->Source().viewport(), &drop);
  EXPECT_EQ(FieldAt(1), "DTCContact Company Name der Firma");

  // Another editor's tool may have a number that this toolbox does not have.
  QMimeData foreign;
  foreign.setData(kToolType, "99");
  QDropEvent other(point, Qt::CopyAction, &foreign, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(window->Source().viewport(), &other);
  EXPECT_EQ(PageText(), QString(2, kEmbeddedCharacter));
}

TEST_F(ToolboxTest, FieldsShowOnlyInASearchAndFollowTheOffice) {
  OpenWithOffice();
  EXPECT_EQ(Shown(), kBuiltIn);
  Search("vorname");
  EXPECT_EQ(Shown().size(), 1);
  ASSERT_TRUE(window->Work().ChooseOffice(desk.Put(
      "andere.json",
      R"({"contactFields":[{"sqlName":"A","displayName":"Vorname des Kindes","dataType":0}]})")));
  EXPECT_EQ(Shown(), QStringList{"Vorname des Kindes"});
  Press(Qt::Key_Return);
  EXPECT_EQ(FieldAt(0), "DTCContact A Vorname des Kindes");
  Press(Qt::Key_T, Qt::ControlModifier);
  EXPECT_EQ(Shown(), kBuiltIn);
}

TEST_F(ToolboxTest, WithoutAnOfficeThereAreOnlyTheGroups) {
  Open();
  Press(Qt::Key_T, Qt::ControlModifier);
  EXPECT_EQ(Shown(), kBuiltIn);
  EXPECT_EQ(List().currentItem()->text().section('\n', 0, 0), "Ausdruck");
  Type("vorname");
  EXPECT_EQ(Shown(), QStringList());
  Press(Qt::Key_Return);
  EXPECT_EQ(Bytes(), "");
}

TEST_F(ToolboxTest, TheKeyboardSkipsHeadingsAndScreenReadersReadThem) {
  Open();
  Press(Qt::Key_T, Qt::ControlModifier);
  QStringList passed;
  for (int key = 0; key < 12; ++key) {
    const QListWidgetItem* current = List().currentItem();
    passed << current->text().section('\n', 0, 0);
    EXPECT_TRUE(current->isSelected());
    Press(Qt::Key_Down);
  }
  QStringList tools = kBuiltIn;
  tools.removeIf([](const QString& name) { return name.startsWith('['); });
  EXPECT_EQ(passed, tools);
  Press(Qt::Key_Home);
  EXPECT_EQ(List().currentRow(), 1);
  Press(Qt::Key_Up);
  EXPECT_EQ(List().currentRow(), 1);

  QAccessible::setActive(true);
  QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&List());
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->child(0)->text(QAccessible::Name), "Gruppe Felder");
  EXPECT_EQ(list->child(1)->text(QAccessible::Description), "Felder");
  EXPECT_EQ(list->child(12)->text(QAccessible::Name), "Gruppe Versand");
}

TEST_F(ToolboxTest, AToolboxFileShowsItsToolsInTheirOrderAndNoFields) {
  desk.Put("toolbox.json", R"({"tools":[
    {"class":"DTCPrint","caption":"Der Vorname","description":""},
    {"class":"DTCIf","caption":"Ist es Morgen?"},
    {"class":"DTCContact","caption":"Vorname","bag":{"field":"Given"}}]})");
  OpenWithOffice();
  EXPECT_EQ(Shown(), (QStringList{"Der Vorname", "Ist es Morgen?", "Vorname"}));
  Search("vorname");
  EXPECT_EQ(Shown(), (QStringList{"Der Vorname", "Vorname"}));
  Press(Qt::Key_Down);
  Press(Qt::Key_Return);
  EXPECT_EQ(FieldAt(0), "DTCContact Given ");
  Search("nachname");
  EXPECT_EQ(Shown(), QStringList());
  ASSERT_TRUE(window->Work().ChooseOffice(desk.Path("office.json")));
  EXPECT_EQ(window->Tools().Tools().size(), 3U);
}

}  // namespace
}  // namespace kvo::editor
