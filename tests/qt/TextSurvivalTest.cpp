// Texts in Qt's boxes with keys of Qt's own; tests/desktop covers the rest.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

#include "tests/qt/QtUser.h"

namespace kvo {
namespace {

using namespace Qt::StringLiterals;

class TwoBoxes final : public Form {
 public:
  TwoBoxes() : Form("Felder", {4500, 3000}) {}
  KVO_CONTROL(TextBox, txtLine, .at = {0, 0, 3000, 300});
  KVO_CONTROL(TextBox, txtLines, .at = {0, 400, 3000, 1200}, .multiLine = true);
};

class QtTextBoxes : public testing::Test {
 protected:
  HeadlessPlatform platform;
  PlatformScope scope{platform};
  TwoBoxes form;
  QtUser user{platform, form};
};

TEST_F(QtTextBoxes, ShiftEnterIsAlsoCrLf) {
  form.txtLines.Text("ab");
  user.FocusByKeyboard(form.txtLines);
  form.txtLines.SelStart(1);
  QTest::keyClick(user.View().WidgetOf(form.txtLines), Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(form.txtLines.Text(), "a\r\nb");
}

TEST_F(QtTextBoxes, KeysThatSelectReachTheForm) {
  form.txtLine.Text("a😀cd");
  auto& line = dynamic_cast<QLineEdit&>(*user.View().WidgetOf(form.txtLine));
  form.txtLine.SelStart(1);
  form.txtLine.SelLength(2);
  EXPECT_EQ(line.selectedText(), u"😀c"_s);
  line.setFocus();
  QTest::keyClick(&line, Qt::Key_End, Qt::ShiftModifier);
  EXPECT_EQ(form.txtLine.SelStart(), 1U);
  EXPECT_EQ(form.txtLine.SelLength(), 3U);
}

TEST_F(QtTextBoxes, BringingAWindowToTheFrontKeepsSelections) {
  form.txtLine.Text("abc");
  auto& line = dynamic_cast<QLineEdit&>(*user.View().WidgetOf(form.txtLine));
  user.FocusByKeyboard(form.txtLine);
  user.Press(Key::selectAll);
  user.Press(Key::tab);
  EXPECT_FALSE(line.hasFocus());
  QEvent activated(QEvent::WindowActivate);
  QCoreApplication::sendEvent(&line, &activated);
  QCoreApplication::processEvents();
  EXPECT_EQ(form.txtLine.SelLength(), 3U);
  EXPECT_EQ(line.selectedText(), u"abc"_s);
}

TEST_F(QtTextBoxes, ABoxHasTheDesktopsColour) {
  form.txtLine.BackColor(SystemColor::buttonFace);
  EXPECT_EQ(user.View().WidgetOf(form.txtLine)->palette().color(QPalette::Base),
            QApplication::palette().color(QPalette::Button));
}

}  // namespace
}  // namespace kvo
