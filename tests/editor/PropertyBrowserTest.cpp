// The property browser: captions and help in the user's language, an input for each kind of
// property, and the id.
#include "apps/editor/PropertyBrowser.h"

#include <QAccessible>
#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QToolButton>
#include <QTreeWidget>

#include "host/qt/QtText.h"
#include "host/registration/classes.h"
#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

constexpr char kBrowsedFields[] = R"({
  "contactFields": [
    {"sqlName": "FirstName", "displayName": "Vorname", "dataType": 0},
    {"sqlName": "LastName", "displayName": "Nachname", "dataType": 0}],
  "orderFields": [{"sqlName": "OrderID", "displayName": "Bestellnummer", "dataType": 1}]})";

std::string Element(std::string_view className, const std::string& id,
                    const std::string& params = {}) {
  return "<object classid=\"progid:KVOPDesignObjects." + std::string(className) + "\" id=\"" + id +
         "\">" + params + "</object>";
}
std::string Param(const std::string& key, const std::string& value) {
  return "<param name=\"" + key + "\" value=\"" + value + "\">";
}

class PropertyBrowserTest : public testing::Test {
 protected:
  PropertyBrowserTest() : window(desk.NewWindow()) {}
  ~PropertyBrowserTest() override { UserLanguage(Language::german); }

  // Opens a page and selects its first control.
  void Open(const std::string& bytes) {
    window->Page().Document()->setModified(false);
    ASSERT_TRUE(window->Work().Open(desk.Put("seite.html", bytes)));
    window->Source().SelectControl(0);
    Tree().setFocus();
  }
  QTreeWidget& Tree() { return *window->Properties().findChild<QTreeWidget*>(); }
  QTreeWidgetItem& Row(const QString& caption) {
    const auto found = Tree().findItems(caption, Qt::MatchExactly | Qt::MatchRecursive);
    if (found.size() != 1) throw std::logic_error("rows named " + caption.toStdString());
    return *found[0];
  }
  QString Shown(const QString& caption) { return Row(caption).text(1); }
  QString Help() { return window->Properties().findChild<QLabel*>("help")->text(); }
  // Opens the input of a row by keyboard.
  template <class Input>
  Input* OpenInput(const QString& caption) {
    Tree().setFocus();
    Tree().setCurrentItem(&Row(caption));
    QTest::keyClick(&Tree(), Qt::Key_Return);
    const auto inputs = Tree().viewport()->findChildren<Input*>();  // closed ones may linger
    return inputs.isEmpty() ? nullptr : inputs.back();
  }
  void ClickValue(const QString& caption) {
    const QModelIndex value = Tree().indexFromItem(&Row(caption), 1);
    Tree().scrollTo(value);
    QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, Tree().visualRect(value).center());
  }
  // Types into an open line and closes it with Enter.
  void Enter(QLineEdit& line, const QString& text) {
    line.selectAll();
    QTest::keyClicks(&line, text);
    QTest::keyClick(&line, Qt::Key_Return);
  }
  std::string Value(const std::string& property) {
    return ToText(window->Controls().Load(0)->Get(property));
  }
  bool WaitForValue(const std::string& property, const std::string& value) {
    return WaitFor([&] { return Value(property) == value; });
  }
  void Undo() { QTest::keyClick(&window->Source(), Qt::Key_Z, Qt::ControlModifier); }
  std::string Bytes() { return window->Page().Content().Bytes(); }
  std::string Id() { return window->Page().LookAt(0)->id; }

  Desk desk;
  std::unique_ptr<MainWindow> window;
};

// --- captions and help ---

TEST_F(PropertyBrowserTest, EveryRowShowsTheCaptionAndHelpOfItsProperty) {
  for (const Language language : {Language::german, Language::english}) {
    UserLanguage(language);
    window = desk.NewWindow();
    for (const RegisteredControl& registered : RegisteredControls()) {
      const ControlClass& contract = registered.contract();
      SCOPED_TRACE(contract.name);
      Open(Element(contract.name, "x"));
      EXPECT_EQ(Tree().topLevelItem(0)->text(0), "Id");
      for (const PropertyRow& row : contract.properties) {
        if (row.type == PropertyType::object) continue;
        const QString help = ToQt(row.input.help.In(language));
        QTreeWidgetItem& item = Row(ToQt(row.input.caption.In(language)));
        Tree().setCurrentItem(&item);
        EXPECT_EQ(Help(), help);
        EXPECT_TRUE(item.toolTip(0).contains(ToQt(row.name))) << item.toolTip(0).toStdString();
        EXPECT_TRUE(item.data(0, Qt::AccessibleDescriptionRole).toString().endsWith(help));
      }
    }
  }
}

TEST_F(PropertyBrowserTest, ProgrammingNamesAreNoCaptions) {
  Open(Element("DTCIf", "x"));
  QStringList captions;
  for (QTreeWidgetItemIterator row(&Tree()); *row != nullptr; ++row) captions << (*row)->text(0);
  EXPECT_EQ(captions,
            (QStringList{"Id", "Beschreibung", "Bedingung", "Wenn erfüllt", "Wenn nicht erfüllt",
                         "Erweitert", "Namensraum", "Name des Tags", "Name im Kästchen"}));
  Tree().setCurrentItem(nullptr);
  EXPECT_EQ(Help(), "Zeigt je nach Bedingung das eine oder das andere");
}

TEST_F(PropertyBrowserTest, AdvancedRowsStayFoldedUntilTheUserUnfoldsThem) {
  Open(Print("p", "1") + Element("DTCScript", "s"));
  QTreeWidgetItem* group = &Row("Erweitert");
  EXPECT_FALSE(group->isExpanded());
  EXPECT_EQ(group->childCount(), 3);
  Tree().setCurrentItem(group);
  EXPECT_FALSE(Help().isEmpty());
  QTest::keyClick(&Tree(), Qt::Key_Return);
  EXPECT_TRUE(group->isExpanded());
  window->Source().SelectControl(1);
  EXPECT_TRUE(Row("Erweitert").isExpanded());
  Enter(*OpenInput<QLineEdit>("Namensraum"), "xy");
  EXPECT_TRUE(
      WaitFor([&] { return ToText(window->Controls().Load(1)->Get("Namespace")) == "xy"; }));
  Tree().setFocus();
  Tree().setCurrentItem(&Row("Erweitert"));
  QTest::keyClick(&Tree(), Qt::Key_Left);
  window->Source().SelectControl(0);
  EXPECT_FALSE(Row("Erweitert").isExpanded());
}

// --- inputs ---

TEST_F(PropertyBrowserTest, AFlagIsACheckBox) {
  Open(Element("DTCProductList", "l"));
  EXPECT_EQ(Row("Preis").checkState(1), Qt::Checked);
  EXPECT_EQ(Shown("Preis"), "Ja");
  Tree().setCurrentItem(&Row("Preis"));
  QTest::keyClick(&Tree(), Qt::Key_Space);
  EXPECT_EQ(Row("Preis").checkState(1), Qt::Unchecked);
  EXPECT_EQ(Shown("Preis"), "Nein");
  EXPECT_EQ(Value("DisplayPrice"), "False");
  EXPECT_EQ(window->Page().UndoName(), "Preis von l ändern");
  ClickValue("Preis");
  EXPECT_EQ(Value("DisplayPrice"), "True");
  // A second click is another one.
  ClickValue("Zwischenspeichern");
  EXPECT_EQ(Value("CacheObject"), "True");
  QAccessibleInterface* tree = QAccessible::queryAccessibleInterface(&Tree());
  bool heard = false;
  for (int child = 0; child < tree->childCount(); ++child)
    heard |= tree->child(child)->state().checkable && tree->child(child)->state().checked;
  EXPECT_TRUE(heard);
}

TEST_F(PropertyBrowserTest, AFieldIsChosenFromTheOffice) {
  desk.Put("office.json", kBrowsedFields);
  Open(Element("DTCContact", "c", Param("field", "LastName")));
  EXPECT_EQ(Shown("Feld"), "Nachname");
  auto* list = OpenInput<QComboBox>("Feld");
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->accessibleName(), "Feld");
  EXPECT_FALSE(list->isEditable());
  ASSERT_EQ(list->count(), 2);
  EXPECT_EQ(list->currentText(), "Nachname");
  ASSERT_TRUE(WaitFor([] { return QApplication::activePopupWidget() != nullptr; }));
  QTest::keyClick(list->view(), Qt::Key_Up);
  QTest::keyClick(list->view(), Qt::Key_Return);
  EXPECT_TRUE(WaitForValue("Field", "FirstName"));
  EXPECT_EQ(Value("DisplayValue"), "Vorname");  // as the property page does
  EXPECT_EQ(Shown("Feld"), "Vorname");
  EXPECT_EQ(window->Page().UndoName(), "Feld von c ändern");
  Undo();
  EXPECT_EQ(Value("Field"), "LastName");
  EXPECT_EQ(Value("DisplayValue"), "");
}

TEST_F(PropertyBrowserTest, EachClassOffersItsOwnFields) {
  desk.Put("office.json", kBrowsedFields);
  Open(Element("DTCOrder", "o", Param("field", "Alt")));
  EXPECT_EQ(Shown("Feld"), "Alt");
  auto* list = OpenInput<QComboBox>("Feld");
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(list->count(), 1);
  EXPECT_EQ(list->itemText(0), "Bestellnummer");
  EXPECT_EQ(list->currentIndex(), -1);
  EXPECT_EQ(list->placeholderText(), "Alt");
  ASSERT_TRUE(WaitFor([] { return QApplication::activePopupWidget() != nullptr; }));
  QTest::keyClick(list->view(), Qt::Key_Escape);
  QTest::keyClick(list, Qt::Key_Escape);
  EXPECT_TRUE(WaitFor([&] { return Tree().hasFocus(); }));
  EXPECT_EQ(Value("Field"), "Alt");
}

TEST_F(PropertyBrowserTest, WithoutFieldsANameIsTyped) {
  Open(Element("DTCContact", "c"));
  auto* line = OpenInput<QLineEdit>("Feld");
  ASSERT_NE(line, nullptr);
  Enter(*line, "Email");
  EXPECT_TRUE(WaitForValue("Field", "Email"));
  EXPECT_EQ(Value("DisplayValue"), "");
}

TEST_F(PropertyBrowserTest, AListOffersTheChoicesOfTheRow) {
  Open(Element("DTCProductList", "l"));
  EXPECT_EQ(Shown("Vorschaubild"), "Linksbündig");
  auto* list = OpenInput<QComboBox>("Vorschaubild");
  ASSERT_NE(list, nullptr);
  EXPECT_FALSE(list->isEditable());
  QStringList offered;
  for (int row = 0; row < list->count(); ++row) offered << list->itemText(row);
  EXPECT_EQ(offered,
            (QStringList{"Nein", "Linksbündig", "Rechtsbündig", "Obenbündig", "Untenbündig"}));
  ASSERT_TRUE(WaitFor([] { return QApplication::activePopupWidget() != nullptr; }));
  QTest::keyClick(list->view(), Qt::Key_Down);
  QTest::keyClick(list->view(), Qt::Key_Return);
  EXPECT_TRUE(WaitForValue("DisplayThumb", "right"));
  EXPECT_EQ(Shown("Vorschaubild"), "Rechtsbündig");

  UserLanguage(Language::english);
  window = desk.NewWindow();
  Open(Element("DTCProductList", "l"));
  EXPECT_EQ(Shown("Thumbnail"), "Left");
  EXPECT_EQ(Shown("Price"), "Yes");
}

TEST_F(PropertyBrowserTest, AnOpenListTakesOtherTextsToo) {
  Open(Element("DTCProductList", "l", Param("table-border", "2")));
  EXPECT_EQ(Shown("Rahmen"), "2 Pixel");
  auto* list = OpenInput<QComboBox>("Rahmen");
  ASSERT_NE(list, nullptr);
  ASSERT_TRUE(list->isEditable());
  EXPECT_EQ(list->currentText(), "2");  // the value, ready to be changed
  EXPECT_EQ(list->count(), 11);
  Enter(*list->lineEdit(), "25");
  EXPECT_TRUE(WaitForValue("Border", "25"));
  EXPECT_EQ(Shown("Rahmen"), "25");
  // Chosen from the list, its caption gives way to its value.
  list = OpenInput<QComboBox>("Rahmen");
  ASSERT_NE(list, nullptr);
  list->showPopup();
  list->view()->setCurrentIndex(list->model()->index(7, 0));
  QTest::keyClick(list->view(), Qt::Key_Return);
  EXPECT_TRUE(WaitForValue("Border", "7"));
  EXPECT_EQ(Shown("Rahmen"), "7 Pixel");

  Open(Print("p", "1"));
  list = OpenInput<QComboBox>("Format");
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->count(), 11);
  Enter(*list->lineEdit(), "dd.mm.yyyy");
  EXPECT_TRUE(WaitForValue("Format", "dd.mm.yyyy"));
  EXPECT_EQ(Shown("Format"), "Datum (23.04.2004)");
}

TEST_F(PropertyBrowserTest, AColourHasASwatchAndAButton) {
  Open(Element("DTCProductList", "l"));
  const auto swatch = [&] {
    const QImage picture = Row("Tabellenfarbe").icon(1).pixmap(16).toImage();
    return picture.pixelColor(picture.rect().center());
  };
  EXPECT_EQ(swatch().alpha(), 0);
  auto* line = OpenInput<QLineEdit>("Tabellenfarbe");
  ASSERT_NE(line, nullptr);
  EXPECT_EQ(line->accessibleName(), "Tabellenfarbe");
  Enter(*line, "#0000FF");
  EXPECT_TRUE(WaitForValue("TableBgColor", "#0000FF"));
  EXPECT_EQ(swatch(), QColor(0, 0, 255));

  // By keyboard: Tab to the button, Space presses it.
  line = OpenInput<QLineEdit>("Tabellenfarbe");
  ASSERT_NE(line, nullptr);
  QTest::keyClick(line, Qt::Key_Tab);
  auto* button = qobject_cast<QToolButton*>(QApplication::focusWidget());
  ASSERT_NE(button, nullptr);
  EXPECT_EQ(button->accessibleName(), "Farbe wählen: Tabellenfarbe");
  const auto pick = [&](bool accepts) {
    bool seen = false;
    WithDialogs(
        [&](QWidget& dialog) {
          auto* colors = qobject_cast<QColorDialog*>(&dialog);
          ASSERT_NE(colors, nullptr);
          EXPECT_EQ(colors->currentColor(), QColor(0, 0, 255));
          seen = true;
          colors->setCurrentColor(QColor(255, 16, 0));
          accepts ? colors->accept() : colors->reject();
        },
        [&] { QTest::keyClick(button, Qt::Key_Space); });
    EXPECT_TRUE(seen);
  };
  pick(false);
  EXPECT_EQ(Value("TableBgColor"), "#0000FF");
  pick(true);
  EXPECT_TRUE(WaitForValue("TableBgColor", "#FF1000"));
  EXPECT_EQ(window->Page().UndoName(), "Tabellenfarbe von l ändern");

  // The input closes when the focus leaves it. The tests' desktop does not activate the window
  // below a closed dialog.
  window->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
  line = OpenInput<QLineEdit>("Tabellenfarbe");
  ASSERT_NE(line, nullptr);
  line->selectAll();
  QTest::keyClicks(line, "red");
  window->Source().setFocus();
  EXPECT_TRUE(WaitForValue("TableBgColor", "red"));
  EXPECT_EQ(swatch().alpha(), 0);
}

TEST_F(PropertyBrowserTest, EscapeLeavesAnInputWithoutAChange) {
  Open(Element("DTCProductList", "l"));
  for (const char* caption : {"Überschrift", "Tabellenfarbe", "Schriftart"}) {
    SCOPED_TRACE(caption);
    auto* line = OpenInput<QLineEdit>(caption);
    ASSERT_NE(line, nullptr);
    QTest::keyClicks(line, "verworfen");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_TRUE(WaitFor([&] { return Tree().hasFocus(); }));
    EXPECT_FALSE(window->isWindowModified());
  }
}

TEST_F(PropertyBrowserTest, TabTakesTheValueAndOpensNoOtherInput) {
  Open(Element("DTCProductList", "l"));
  auto* line = OpenInput<QLineEdit>("Produkte");  // above a check box
  ASSERT_NE(line, nullptr);
  QTest::keyClicks(line, "A1");
  QTest::keyClick(line, Qt::Key_Tab);
  EXPECT_TRUE(WaitForValue("SelectedProducts", "A1"));
  QTest::qWait(50);
  EXPECT_TRUE(Tree().hasFocus());
  EXPECT_EQ(Tree().currentItem(), &Row("Produkte"));
  EXPECT_TRUE(Tree().viewport()->findChildren<QLineEdit*>().isEmpty());
}

TEST_F(PropertyBrowserTest, AClickOnAValueEditsIt) {
  Open(Print("p", "alt"));
  ClickValue("Ausdruck");
  auto* line = Tree().viewport()->findChild<QLineEdit*>();
  ASSERT_NE(line, nullptr);
  Enter(*line, "neu");
  EXPECT_TRUE(WaitForValue("Value", "neu"));
}

TEST_F(PropertyBrowserTest, HtmlAndTextsOfSeveralLinesOpenTheirWindow) {
  for (const auto& [page, caption, old] :
       std::vector<std::tuple<std::string, QString, std::string>>{
           {Element("DTCIf", "i", Param("on-true", "a")), "Wenn erfüllt", "a"},
           {Element("DTCClicktracker", "k", Param("html-content", "b")), "Inhalt des Links", "b"},
           {Element("DTCElement", "e", Param("html-content", "c")), "Inhalt", "c"},
           {Element("DTCPrint", "p", Param("value", "d&#10;e")), "Ausdruck", "d\ne"}}) {
    SCOPED_TRACE(page);
    Open(page);
    Tree().setCurrentItem(&Row(caption));
    bool seen = false;
    WithDialogs(
        [&](QWidget& dialog) {
          seen = true;
          EXPECT_EQ(dialog.windowTitle(), caption);
          auto* text = dialog.findChild<QPlainTextEdit*>();
          ASSERT_NE(text, nullptr);
          EXPECT_EQ(text->toPlainText().toStdString(), old);
          text->selectAll();
          QTest::keyClicks(text, "neu");
          PressButton(dialog, "OK");
        },
        [&] { QTest::keyClick(&Tree(), Qt::Key_Return); });
    EXPECT_TRUE(seen);
    EXPECT_TRUE(Shown(caption) == "neu") << Shown(caption).toStdString();
    EXPECT_TRUE(window->Page().UndoName().startsWith(caption + " von "));
  }
}

// --- the id ---

TEST_F(PropertyBrowserTest, TheIdIsChangedInOneStep) {
  Open(Print("alt", "1") + "<p>");
  EXPECT_EQ(Shown("Id"), "alt");
  Tree().setCurrentItem(&Row("Id"));
  EXPECT_FALSE(Help().isEmpty());
  auto* line = OpenInput<QLineEdit>("Id");
  ASSERT_NE(line, nullptr);
  EXPECT_EQ(line->accessibleName(), "Id");
  Enter(*line, "neu");
  EXPECT_TRUE(WaitFor([&] { return Id() == "neu"; }));
  EXPECT_EQ(Shown("Id"), "neu");
  EXPECT_EQ(Value("Value"), "1");
  EXPECT_EQ(window->Page().UndoName(), "Id von alt ändern");
  EXPECT_EQ(window->Source().CurrentControl(), 0);
  EXPECT_NE(Bytes().find("id=\"neu\""), std::string::npos) << Bytes();
  Undo();
  EXPECT_EQ(Bytes(), Print("alt", "1") + "<p>");
}

TEST_F(PropertyBrowserTest, AnEmptyIdRemovesTheAttribute) {
  Open(Print("alt", "1"));
  auto* line = OpenInput<QLineEdit>("Id");
  ASSERT_NE(line, nullptr);
  line->clear();
  QTest::keyClick(line, Qt::Key_Return);
  EXPECT_TRUE(WaitFor([&] { return Id().empty(); }));
  EXPECT_EQ(Bytes().find(" id="), std::string::npos) << Bytes();
  EXPECT_EQ(Value("Value"), "1");
}

TEST_F(PropertyBrowserTest, AnIdThatAnotherControlHasIsRefused) {
  // The last one cannot be loaded, and is text in the editor.
  const std::string page = Print("a", "1") + Print("b", "2") + Element("DTCPrnt", "c");
  Open(page);
  for (const char* taken : {"b", "c"}) {
    QString said;
    WithDialogs(
        [&](QWidget& dialog) {
          said = static_cast<QMessageBox&>(dialog).text();
          PressButton(dialog, "OK");
        },
        [&] {
          Enter(*OpenInput<QLineEdit>("Id"), taken);
          EXPECT_TRUE(WaitFor([&] { return !said.isEmpty(); }));
        });
    EXPECT_TRUE(said.contains(QString("„%1“").arg(taken))) << said.toStdString();
    EXPECT_EQ(Bytes(), page);
    EXPECT_EQ(Shown("Id"), "a");
    EXPECT_FALSE(window->isWindowModified());
  }
}

TEST_F(PropertyBrowserTest, AnotherIdAsksBeforeItOverwritesAHandEditedText) {
  std::string page =
      "<!--KVO CONTROL STARTSPAN 1 <object classid=\"progid:KVOPDesignObjects.DTCPrint\" "
      "id=\"a\"><param name=\"value\" value=\"1\"><param name=\"format\" "
      "value=\"\"></object>--><xy:print value=\"1\"/><!--KVO CONTROL ENDSPAN 1-->";
  Open(page);
  WithDialogs([](QWidget& dialog) { PressButton(dialog, "Abbrechen"); },
              [&] { window->Properties().onRename("b"); });
  EXPECT_EQ(Bytes(), page);
  WithDialogs([](QWidget& dialog) { PressButton(dialog, "Überschreiben"); },
              [&] { window->Properties().onRename("b"); });
  page.replace(page.find("<xy:print"), 9, "<kv:print");
  page.replace(page.find("id=\"a\""), 6, "id=\"b\"");
  EXPECT_EQ(Bytes(), page);
}

}  // namespace
}  // namespace kvo::editor
