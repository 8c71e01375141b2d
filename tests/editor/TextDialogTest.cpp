// The window for long texts: HTML in colours, fields as runtime tags.
#include "apps/editor/TextDialog.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextLayout>

#include "controls/DTCContact.h"
#include "controls/DTCOrder.h"
#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

office::Office::Description Fields() {
  return {{{"FirstName", "Vorname", 0}, {"LastName", "Nachname", 0}, {"Bare", "", 0}},
          {{"OrderID", "Bestellnummer", 1}},
          {}};
}

// What a new control with the field writes.
template <class Class>
std::string TagOf(const std::string& field) {
  const auto control = page::Load(Class::Contract(), {{"field", field}});
  return control->GetRuntimeText();
}

class TextDialogTest : public testing::Test {
 protected:
  // Runs `edit` in the window for HTML; it has to close it.
  std::optional<std::string> Edit(const std::string& html,
                                  const office::Office::Description& office,
                                  const std::function<void(QWidget& dialog)>& edit) {
    std::optional<std::string> edited;
    WithDialogs(
        [&](QWidget& dialog) {
          edit(dialog);
          dialog.close();
        },
        [&] { edited = EditHtml("Inhalt", html, FieldTools(office), nullptr); });
    return edited;
  }
  static QPlainTextEdit& Text(QWidget& dialog) { return *dialog.findChild<QPlainTextEdit*>(); }
  static void Press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }

  Desk desk;
};

TEST_F(TextDialogTest, HtmlIsInColours) {
  Edit("a<b title=\"x\">y</b>", {}, [](QWidget& dialog) {
    const QTextLayout* line = Text(dialog).document()->firstBlock().layout();
    EXPECT_TRUE(WaitFor([&] { return line->formats().size() >= 3; }));
    PressButton(dialog, "Abbrechen");
  });
  WithDialogs(
      [](QWidget& dialog) {
        QTest::qWait(50);
        EXPECT_TRUE(Text(dialog).document()->firstBlock().layout()->formats().isEmpty());
        EXPECT_EQ(dialog.findChild<QListWidget*>(), nullptr);
        dialog.close();
      },
      [] { EditText("Text", "a<b>", nullptr); });
}

TEST_F(TextDialogTest, AFieldIsInsertedAsItsRuntimeTag) {
  const auto edited = Edit("Hallo !", Fields(), [](QWidget& dialog) {
    EXPECT_TRUE(Text(dialog).hasFocus());
    QTextCursor caret = Text(dialog).textCursor();
    caret.setPosition(6);
    Text(dialog).setTextCursor(caret);
    // By keyboard: into the search, down into the list, and back in the text.
    Press(Qt::Key_Tab);
    auto* search = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_NE(search, nullptr);
    EXPECT_EQ(search->accessibleName(), "Feld suchen");
    auto* list = dialog.findChild<QListWidget*>();
    EXPECT_EQ(list->accessibleName(), "Felder");
    QTest::keyClicks(search, "name");
    EXPECT_EQ(list->count(), 2);
    Press(Qt::Key_Down);
    EXPECT_TRUE(list->hasFocus());
    Press(Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_TRUE(Text(dialog).hasFocus());
    QTest::keyClicks(&Text(dialog), " ");
    const QPoint first = list->visualItemRect(list->item(0)).center();
    DoubleClick(*list->viewport(), first);
    PressButton(dialog, "OK");
  });
  ASSERT_TRUE(edited.has_value());
  EXPECT_EQ(*edited,
            "Hallo " + TagOf<DTCContact>("LastName") + " " + TagOf<DTCContact>("FirstName") + "!");
  EXPECT_EQ(TagOf<DTCContact>("LastName"), "<kv:contact field=\"LastName\"/>");
}

TEST_F(TextDialogTest, AllFieldsAreListedInGroups) {
  const auto edited = Edit("", Fields(), [](QWidget& dialog) {
    auto* list = dialog.findChild<QListWidget*>();
    QStringList shown;
    for (int row = 0; row < list->count(); ++row)
      shown << list->item(row)->text().section('\n', 0, 0);
    EXPECT_EQ(shown, (QStringList{"Kontaktfeld", "Vorname", "Nachname", "Bare", "Bestellfeld",
                                  "Bestellnummer"}));
    list->setFocus();
    Press(Qt::Key_End);
    Press(Qt::Key_Return);
    PressButton(dialog, "OK");
  });
  EXPECT_EQ(edited, TagOf<DTCOrder>("OrderID"));
}

TEST_F(TextDialogTest, WithoutFieldsItSaysSo) {
  const auto edited = Edit("x", {}, [](QWidget& dialog) {
    QStringList said;
    for (const QLabel* label : dialog.findChildren<QLabel*>()) said << label->text();
    EXPECT_TRUE(said.join(' ').contains("Office-Datei")) << said.join(' ').toStdString();
    PressButton(dialog, "Abbrechen");
  });
  EXPECT_FALSE(edited.has_value());
}

TEST_F(TextDialogTest, WhatIsNotTouchedStaysAsItIs) {
  const std::string odd = "a\r\nb\rc\nd\x01<b>\t\xE2\x80\xA8</b>";
  const auto edited = Edit(odd, Fields(), [](QWidget& dialog) {
    Text(dialog).moveCursor(QTextCursor::End);
    QTest::keyClicks(&Text(dialog), "!");
    QTest::qWait(50);  // for the colours
    PressButton(dialog, "OK");
  });
  EXPECT_EQ(edited, odd + "!");
}

TEST_F(TextDialogTest, TheTextFollowsTheWindowsSize) {
  Edit("x", Fields(), [](QWidget& dialog) {
    const QSize before = Text(dialog).size();
    dialog.resize(dialog.size() + QSize(200, 100));
    EXPECT_TRUE(WaitFor([&] {
      return Text(dialog).width() >= before.width() + 150 &&
             Text(dialog).height() >= before.height() + 90;
    }));
    dialog.close();
  });
}

}  // namespace
}  // namespace kvo::editor
