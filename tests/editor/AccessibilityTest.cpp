// What screen readers read aloud.
#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAccessible>
#include <QComboBox>
#include <QLineEdit>

#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

constexpr char kPage[] =
    "a<object classid=\"progid:KVOPDesignObjects.DTCPrint\" id=\"Preis\"><param name=\"value\" "
    "value=\"x\"></object>b\nzweite \x01 Zeile";
constexpr char kBox[] = "Control DTCPrint print x, Preis";

class AccessibilityTest : public testing::Test {
 protected:
  AccessibilityTest() : window(desk.NewWindow()) {
    QAccessible::setActive(true);
    EXPECT_TRUE(window->Work().Open(desk.Put("seite.html", kPage)));
    face = QAccessible::queryAccessibleInterface(&window->Source());
  }
  QAccessibleTextInterface& Text() { return *face->textInterface(); }

  Desk desk;
  std::unique_ptr<MainWindow> window;
  QAccessibleInterface* face = nullptr;
};

TEST_F(AccessibilityTest, ABoxIsReadAsItsControl) {
  ASSERT_NE(face->textInterface(), nullptr);
  EXPECT_EQ(face->role(), QAccessible::EditableText);
  EXPECT_EQ(face->text(QAccessible::Name), "Quelltext");
  EXPECT_EQ(Text().characterCount(), window->Page().Content().Text().size());
  EXPECT_EQ(Text().text(0, 3), QString("a") + kBox + "b");
  int start = 0;
  int end = 0;
  EXPECT_EQ(Text().textAtOffset(1, QAccessible::CharBoundary, &start, &end), kBox);
  EXPECT_EQ(start, 1);
  EXPECT_EQ(end, 2);
  EXPECT_EQ(Text().textAfterOffset(0, QAccessible::CharBoundary, &start, &end), kBox);
  EXPECT_EQ(Text().textBeforeOffset(2, QAccessible::CharBoundary, &start, &end), kBox);
  EXPECT_EQ(Text().textAtOffset(0, QAccessible::LineBoundary, &start, &end),
            QString("a") + kBox + "b\n");
  EXPECT_EQ(Text().text(4, 30), "zweite Zeichen U+0001 Zeile");
  EXPECT_FALSE(Text().text(0, 100).contains(kEmbeddedCharacter));
}

TEST_F(AccessibilityTest, CaretAndSelectionAreTheDocuments) {
  Text().setSelection(0, 1, 2);
  EXPECT_EQ(window->Source().CurrentControl(), 1);
  EXPECT_EQ(Text().selectionCount(), 1);
  Text().setCursorPosition(3);
  EXPECT_EQ(Text().cursorPosition(), 3);
  EXPECT_EQ(Text().selectionCount(), 0);
  EXPECT_GT(Text().characterRect(1).width(), 20);
  face->editableTextInterface()->replaceText(0, 1, "neu");
  EXPECT_EQ(window->Page().Content().Text().left(3), "neu");
}

TEST_F(AccessibilityTest, EveryFocusableWidgetHasAName) {
  int named = 0;
  for (QWidget* widget : window->findChildren<QWidget*>()) {
    const bool input = qobject_cast<QLineEdit*>(widget) || qobject_cast<QComboBox*>(widget) ||
                       qobject_cast<QAbstractButton*>(widget) ||
                       qobject_cast<QAbstractScrollArea*>(widget);
    if (!input || widget->focusPolicy() == Qt::NoFocus) continue;
    QAccessibleInterface* named_ = QAccessible::queryAccessibleInterface(widget);
    ASSERT_NE(named_, nullptr);
    EXPECT_FALSE(named_->text(QAccessible::Name).isEmpty())
        << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
    ++named;
  }
  EXPECT_GT(named, 10);
}

}  // namespace
}  // namespace kvo::editor
