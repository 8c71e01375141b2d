// The form for the records of a preview: what it shows, what it writes, and that nothing is lost.
#include "apps/editor/RecordForm.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTableWidget>
#include <QToolButton>

#include "apps/editor/PreviewPanel.h"
#include "apps/editor/PreviewView.h"
#include "apps/editor/Previewing.h"
#include "apps/editor/RecordFields.h"
#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

constexpr char kOfficeOfForm[] =
    R"({"contactFields": [{"sqlName": "FirstName", "displayName": "Vorname", "dataType": 0},
                          {"sqlName": "Zip", "displayName": "PLZ", "dataType": 0},
                          {"sqlName": "Points", "displayName": "Punkte", "dataType": 1},
                          {"sqlName": "IsPremium", "displayName": "Premium", "dataType": 3}],
        "orderFields": [{"sqlName": "OrderID", "displayName": "Bestellnummer", "dataType": 1}]})";
constexpr char kRecordsOfForm[] =
    R"({"records": [{"name": "Anna", "customer": {"FirstName": "Anna", "Points": 12.5, "Extra": "e"},
                     "order": {"OrderID": 4711, "positions": [
                       {"description": "Tee", "quantity": 2, "price": 3.5, "note": "bleibt"}]},
                     "own": {"Key": "v"}},
                    {"name": "Bo", "customer": {"FirstName": "Bo"}}]})";

class RecordFormTest : public testing::Test {
 protected:
  RecordFormTest() : window(desk.NewWindow()) { window->resize(1400, 860); }

  void Open(const std::string& records = kRecordsOfForm) {
    if (!records.empty()) desk.Put("preview.json", records);
    desk.Put("office.json", kOfficeOfForm);
    ASSERT_TRUE(window->Work().Open(
        desk.Put("seite.html",
                 "<p>Hallo <object classid=\"progid:KVOPDesignObjects.DTCContact\" id=\"a\"><param "
                 "name=\"field\" value=\"FirstName\"></object>, " +
                     Print("b", "#system.date#"))));
    if (!window->Preview().isVisible()) QTest::keyClick(window.get(), Qt::Key_4, Qt::AltModifier);
    ASSERT_TRUE(WaitForPreview());
  }
  bool WaitForPreview() {
    return WaitFor([&] {
      const auto& shown = window->Previews().Shown();
      return shown != nullptr && shown->revision == window->Page().Revision() &&
             (!shown->hasRecord || window->Preview().View().ShownRevision() == shown->revision);
    });
  }
  // Opens the form by its button. Each dialog that opens goes to the next of `answers`.
  void Edit(const std::vector<std::function<void(QWidget&)>>& answers) {
    std::size_t opened = 0;
    WithDialogs(
        [&](QWidget& dialog) {
          if (opened < answers.size()) return answers[opened++](dialog);
          ADD_FAILURE() << "an unexpected dialog";
          dialog.close();
        },
        [&] {
          for (QToolButton* button : window->Preview().findChildren<QToolButton*>())
            if (button->toolTip().startsWith("Datensatz bearbeiten"))
              QTest::mouseClick(button, Qt::LeftButton);
        });
    EXPECT_EQ(opened, answers.size());
  }
  static QLineEdit& Line(QWidget& form, const QString& name) {
    auto* line = form.findChild<QLineEdit*>(name);
    if (line == nullptr) throw std::runtime_error("no line " + name.toStdString());
    return *line;
  }
  static void Type(QWidget& form, const QString& name, const QString& text) {
    QLineEdit& line = Line(form, name);
    line.setFocus();
    line.selectAll();
    QTest::keyClick(&line, Qt::Key_Delete);
    QTest::keyClicks(&line, text);
  }
  static void Press(QWidget& form, const char* button) {
    QTest::mouseClick(form.findChild<QPushButton*>(button), Qt::LeftButton);
  }
  static void Go(QWidget& form, int row) {
    auto* list = form.findChild<QListWidget*>("records");
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualItemRect(list->item(row)).center());
  }
  preview::RecordsFile Written() const {
    return preview::LoadRecords(desk.Path("preview.json").toStdString());
  }
  QString Mail() {
    return ValueIn(*window->Preview().View().View().page(), "document.body.innerText").toString();
  }

  Desk desk;
  std::unique_ptr<MainWindow> window;
};

TEST_F(RecordFormTest, HasARowForEachFieldOfTheOfficeThePageAndTheRecord) {
  Open();
  Edit({[](QWidget& form) {
    QStringList names;
    for (const QWidget* each : form.findChildren<QWidget*>())
      if (each->objectName().contains('.')) names += each->objectName();
    EXPECT_EQ(names.join(' ').toStdString(),
              "customer.FirstName customer.Zip customer.Points customer.IsPremium customer.Extra "
              "order.OrderID system.date own.Key");
    EXPECT_EQ(Line(form, "customer.FirstName").accessibleName(), "Vorname");
    EXPECT_EQ(Line(form, "customer.Points").text(), "12,5");
    EXPECT_NE(form.findChild<QComboBox*>("customer.IsPremium"), nullptr);
    EXPECT_EQ(form.findChild<QTableWidget*>("positions")->item(0, 1)->text(), "Tee");
    PressButton(form, "Abbrechen");
  }});
}

TEST_F(RecordFormTest, WritesWhatIsTypedAndNothingElse) {
  Open();
  const preview::RecordsFile before = Written();
  Edit({[](QWidget& form) {
    Type(form, "recordName", "Anne");
    Type(form, "customer.FirstName", "Anne & \"Co\"");
    Type(form, "customer.Points", "1.234,5");
    Type(form, "customer.Zip", "01067");
    auto* premium = form.findChild<QComboBox*>("customer.IsPremium");
    premium->setFocus();
    QTest::keyClicks(premium, "J");
    QTest::keyClick(form.focusWidget(), Qt::Key_Return, Qt::ControlModifier);
  }});
  preview::RecordsFile wanted = before;
  preview::Record& anna = wanted.records[0];
  anna.name = "Anne";
  anna.Group("customer").Set("FirstName", "Anne & \"Co\"");
  anna.Group("customer").Set("Points", 1234.5);
  anna.Group("customer").Set("Zip", "01067");
  anna.Group("customer").Set("IsPremium", true);
  EXPECT_EQ(Written().records, wanted.records);
  EXPECT_TRUE(WaitFor([&] { return Mail().contains("Hallo Anne & \"Co\""); }));
}

TEST_F(RecordFormTest, OkWithoutChangesKeepsEveryRecord) {
  Open();
  const preview::RecordsFile before = Written();
  Edit({[](QWidget& form) {
    Go(form, 1);
    Go(form, 0);
    PressButton(form, "Speichern");
  }});
  EXPECT_EQ(Written().records, before.records);
}

TEST_F(RecordFormTest, EnterInALineClosesNothing) {
  Open();
  Edit({[](QWidget& form) {
    QLineEdit& line = Line(form, "customer.Zip");
    line.setFocus();
    QTest::keyClick(&line, Qt::Key_Return);
    EXPECT_TRUE(form.isVisible());
    QTest::keyClick(&form, Qt::Key_Escape);
  }});
}

TEST_F(RecordFormTest, AddsAndDeletesPositions) {
  Open();
  Edit({[](QWidget& form) {
    auto* table = form.findChild<QTableWidget*>("positions");
    Press(form, "addPosition");
    ASSERT_EQ(table->rowCount(), 2);
    const auto type = [&](int column, const QString& text) {
      table->setCurrentCell(1, column);
      table->setFocus();
      QTest::keyClick(table, Qt::Key_F2);
      QTest::keyClicks(QApplication::focusWidget(), text);
    };
    type(1, "Kanne");
    type(2, "3");
    type(3, "4,25");  // still being edited when the form closes
    PressButton(form, "Speichern");
  }});
  const auto positions = Written().records[0].positions;
  ASSERT_TRUE(positions.has_value());
  ASSERT_EQ(positions->size(), 2U);
  EXPECT_EQ(*(*positions)[0].Find("note"), Variant("bleibt"));
  EXPECT_EQ(*(*positions)[1].Find("description"), Variant("Kanne"));
  EXPECT_EQ(*(*positions)[1].Find("quantity"), Variant(3));
  EXPECT_EQ(*(*positions)[1].Find("price"), Variant(4.25));
  EXPECT_EQ((*positions)[1].Find("total"), nullptr);
  Edit({[](QWidget& form) {
    form.findChild<QTableWidget*>("positions")->setCurrentCell(0, 0);
    Press(form, "deletePosition");
    Press(form, "deletePosition");
    PressButton(form, "Speichern");
  }});
  EXPECT_EQ(Written().records[0].positions, std::vector<preview::Values>());
  EXPECT_EQ(Written().records[1].positions, std::nullopt);
}

TEST_F(RecordFormTest, MakesCopiesAndDeletesRecords) {
  Open();
  Edit({[](QWidget& form) {
          Press(form, "copyRecord");
          Type(form, "customer.FirstName", "Zweite");
          Press(form, "newRecord");
          Type(form, "recordName", "Cem");
          Type(form, "customer.FirstName", "Cem");
          Go(form, 1);
          EXPECT_EQ(Line(form, "recordName").text(), "Bo");
          Press(form, "deleteRecord");
          PressButton(form, "Speichern");
        },
        [](QWidget& question) { PressButton(question, "Löschen"); }});
  const auto records = Written().records;
  ASSERT_EQ(records.size(), 3U);
  EXPECT_EQ(records[0].name, "Anna");
  EXPECT_EQ(records[1].name, "Anna 2");
  EXPECT_EQ(*records[1].Find("customer", "FirstName"), Variant("Zweite"));
  EXPECT_EQ(records[1].positions, records[0].positions);
  EXPECT_EQ(records[2].name, "Cem");
}

TEST_F(RecordFormTest, AMadeUpRecordBecomesTheFirstOfANewFile) {
  Open("");
  ASSERT_TRUE(window->Previews().Shown()->current.madeUp);
  Edit({[](QWidget& form) {
    Type(form, "customer.FirstName", "Erste");
    PressButton(form, "Speichern");
  }});
  ASSERT_EQ(Written().records.size(), 1U);
  EXPECT_TRUE(WaitFor([&] { return Mail().contains("Hallo Erste"); }));
  EXPECT_FALSE(window->Previews().Shown()->current.madeUp);
}

TEST_F(RecordFormTest, AsksBeforeItLosesWhatIsTyped) {
  Open();
  const std::string before = desk.Bytes("preview.json");
  const auto change = [](QWidget& form) {
    Type(form, "customer.FirstName", "Neu");
    QTest::keyClick(&form, Qt::Key_Escape);
  };
  Edit({change, [](QWidget& question) { PressButton(question, "Verwerfen"); }});
  EXPECT_EQ(desk.Bytes("preview.json"), before);
  Edit({[&](QWidget& form) {
          change(form);
          EXPECT_TRUE(form.isVisible());
          EXPECT_EQ(Line(form, "customer.FirstName").text(), "Neu");
          PressButton(form, "Speichern");
        },
        [](QWidget& question) { PressButton(question, "Abbrechen"); }});
  EXPECT_EQ(*Written().records[0].Find("customer", "FirstName"), Variant("Neu"));
}

TEST_F(RecordFormTest, AsksBeforeItOverwritesAFileThatChangedMeanwhile) {
  Open();
  const std::string other = R"({"records": [{"name": "Andere"}]})";
  Edit({[&](QWidget& form) {
          Type(form, "customer.FirstName", "Neu");
          desk.Put("preview.json", other);
          PressButton(form, "Speichern");
          EXPECT_TRUE(form.isVisible());
          EXPECT_EQ(desk.Bytes("preview.json"), other);
          PressButton(form, "Speichern");
        },
        [](QWidget& question) { PressButton(question, "Abbrechen"); },
        [](QWidget& question) { PressButton(question, "Überschreiben"); }});
  EXPECT_EQ(Written().records[0].name, "Anna");
}

TEST_F(RecordFormTest, SaysWhyTheFileCannotBeWritten) {
  Open();
  Edit({[&](QWidget& form) {
          Type(form, "customer.FirstName", "Neu");
          QFile::remove(desk.Path("preview.json"));
          QDir().mkdir(desk.Path("preview.json"));
          PressButton(form, "Speichern");
          EXPECT_TRUE(form.isVisible());
          QTest::keyClick(&form, Qt::Key_Escape);
        },
        [](QWidget& message) { message.close(); },
        [](QWidget& question) { PressButton(question, "Verwerfen"); }});
}

TEST_F(RecordFormTest, DoesNotOpenOnABrokenFileOrAnUnsavedPage) {
  Open("{broken");
  Edit({[](QWidget& message) {
    EXPECT_TRUE(static_cast<QMessageBox&>(message).text().contains("preview.json:1:"));
    message.close();
  }});
  EXPECT_EQ(desk.Bytes("preview.json"), "{broken");
  window->Work().New();
  ASSERT_TRUE(WaitFor([&] {
    return window->Previews().Shown()->revision == window->Page().Revision() &&
           window->Previews().Shown()->hasRecord;
  }));
  Edit({[](QWidget& message) {
    EXPECT_TRUE(static_cast<QMessageBox&>(message).text().contains("Speichern Sie die Seite"));
    message.close();
  }});
}

TEST(RecordFieldsTest, ATypedNumberStaysANumber) {
  const Variant number = 12.5;
  const Variant text = "12,5";
  EXPECT_EQ(ValueOf("7", &number, true), Variant(7));
  EXPECT_EQ(ValueOf("7,25", &number, true), Variant(7.25));
  EXPECT_EQ(ValueOf("7.25", &number, true), Variant(7.25));
  EXPECT_EQ(ValueOf("1.234", &number, true), Variant(1234));
  EXPECT_EQ(ValueOf("1.234.567,5", nullptr, true), Variant(1234567.5));
  EXPECT_EQ(ValueOf("4000000000", nullptr, true), Variant(4e9));
  EXPECT_EQ(ValueOf("viele", &number, true), Variant("viele"));
  EXPECT_EQ(ValueOf("", &number, true), Variant());
  EXPECT_EQ(ValueOf("", &text, true), Variant(""));
  EXPECT_EQ(ValueOf("01067", nullptr, false), Variant("01067"));
  EXPECT_EQ(ValueOf("", nullptr, false), Variant(""));
}

}  // namespace
}  // namespace kvo::editor
