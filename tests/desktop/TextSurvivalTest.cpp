// Text that a widget cannot show survives the user's edits.
#include <gtest/gtest.h>

#include "tests/desktop/DesktopUser.h"

namespace kvo {
namespace {

class Boxes final : public Form {
 public:
  Boxes() : Form("Felder", {4500, 3000}) {}
  KVO_CONTROL(
      TextBox, txtLine, .at = {0, 0, 3000, 300}, .onChange = [this](TextBox&) { ++changes; });
  KVO_CONTROL(
      TextBox, txtLines, .at = {0, 400, 3000, 1200}, .multiLine = true,
      .onChange = [this](TextBox&) { ++changes; });
  KVO_CONTROL(
      ComboBox, cboFree, .at = {0, 1700, 3000, 300}, .editable = true,
      .onChange = [this](ComboBox&) { ++changes; });
  KVO_CONTROL(PropertyGrid, suiRows, .at = {0, 2100, 3000, 600});
  int changes = 0;
};

const std::string kNul("\0", 1);

class TextSurvival : public testing::Test {
 protected:
  // Shows the text, enters the box, types an "x" after `before`, and checks the whole text.
  void TypeInto(EditBox& box, const std::string& before, const std::string& after) {
    SCOPED_TRACE(std::string(box.Name()) + ": " + before + "|" + after);
    box.Text(before + after);
    form.changes = 0;
    user.FocusByKeyboard(box);
    EXPECT_EQ(box.Text(), before + after);
    EXPECT_EQ(form.changes, 0);
    user.Press(Key::home);
    box.SelStart(CharacterCount(before));
    EXPECT_EQ(box.SelStart(), CharacterCount(before));
    user.Type("x");
    EXPECT_EQ(box.Text(), before + "x" + after);
    EXPECT_EQ(box.SelStart(), CharacterCount(before) + 1);
    EXPECT_EQ(form.changes, 1);
    user.Press(Key::backspace);
    EXPECT_EQ(box.Text(), before + after);
    user.FocusByKeyboard(&box == &form.txtLine ? static_cast<EditBox&>(form.txtLines)
                                               : form.txtLine);
    EXPECT_EQ(box.Text(), before + after);
    ExpectShown();
  }
  void ExpectShown() { EXPECT_EQ(Misshown(user, form), ""); }

  HeadlessPlatform platform;
  PlatformScope scope{platform};
  Boxes form;
  std::unique_ptr<DesktopUser> sitting{SitDown(platform, form)};
  DesktopUser& user{*sitting};
  const std::vector<EditBox*> boxes = {&form.txtLine, &form.txtLines, &form.cboFree};
};

TEST_F(TextSurvival, OfTheTextAroundTheCaret) {
  const std::string awkward[] = {
      "\r\n",         "\r",           "\n", kNul, "\xE2\x80\xA8", "\xE2\x80\xA9", "\xC2\xA0",
      "\xEF\xB7\x90", "\xEF\xBF\xBC", "\t", "😀",  "e\xCC\x81",    "\xFF",         "\x01",
      "\r\n\r\r\n\n", "]]>"};
  for (const std::string& piece : awkward) {
    for (EditBox* box : boxes) {
      TypeInto(*box, "a" + piece, "b");
      TypeInto(*box, "a", piece + "b");
      TypeInto(*box, piece, piece);
    }
  }
}

TEST_F(TextSurvival, CharactersWithTwoUnitsAreTypedAsOne) {
  for (EditBox* box : boxes) {
    SCOPED_TRACE(box->Name());
    user.FocusByKeyboard(*box);
    form.changes = 0;
    user.Type("a😀b");
    EXPECT_EQ(box->Text(), "a😀b");
    EXPECT_EQ(form.changes, 3);
    EXPECT_EQ(box->SelStart(), 3U);
  }
}

TEST_F(TextSurvival, EnterIsCrLfInSeveralLinesAndNothingInOne) {
  form.txtLines.Text("ab");
  user.FocusByKeyboard(form.txtLines);
  form.txtLines.SelStart(1);
  user.Type("\n");
  EXPECT_EQ(form.txtLines.Text(), "a\r\nb");
  EXPECT_EQ(form.txtLines.SelStart(), 3U);
  user.Press(Key::backspace);
  EXPECT_EQ(form.txtLines.Text(), "ab");
  form.txtLine.Text("ab");
  user.FocusByKeyboard(form.txtLine);
  user.Type("\n");
  EXPECT_EQ(form.txtLine.Text(), "ab");
}

TEST_F(TextSurvival, PastingIntoOneLineStopsAtTheFirstBreak) {
  user.FocusByKeyboard(form.txtLine);
  user.PutOnClipboard("x\r\ny");
  form.txtLine.Text("cd");
  form.txtLine.SelStart(1);
  user.Paste();
  EXPECT_EQ(form.txtLine.Text(), "cxd");
  ExpectShown();
}

TEST_F(TextSurvival, PastingIntoSeveralLinesKeepsBreaks) {
  form.txtLines.Text("cd");
  user.FocusByKeyboard(form.txtLines);
  form.txtLines.SelStart(1);
  user.PutOnClipboard("x\ny");
  user.Paste();
  EXPECT_EQ(form.txtLines.Text(), "cx\r\nyd");
  ExpectShown();
}

TEST_F(TextSurvival, CopyingCopiesTheFormsText) {
  for (const std::string lineBreak : {"\r\n", "\n"}) {
    const std::string text = "a" + lineBreak + kNul + "b";
    form.txtLines.Text(text);
    user.FocusByKeyboard(form.txtLines);
    user.Press(Key::selectAll);
    EXPECT_EQ(form.txtLines.SelLength(), text.size());
    user.Copy();
    EXPECT_EQ(user.OnClipboard(), text);
    EXPECT_EQ(form.txtLines.Text(), text);
  }
}

TEST_F(TextSurvival, CuttingRemovesTheSelection) {
  form.txtLines.Text("a\r\n\n" + kNul + "b");
  user.FocusByKeyboard(form.txtLines);
  form.txtLines.SelStart(1);
  form.txtLines.SelLength(3);
  user.Cut();
  EXPECT_EQ(form.txtLines.Text(), "a" + kNul + "b");
  EXPECT_EQ(user.OnClipboard(), "\r\n\n");
}

TEST_F(TextSurvival, TypingOverTheSameTextIsAChange) {
  form.txtLine.Text("0");
  form.txtLines.Text("0");
  for (TextBox* box : {&form.txtLine, &form.txtLines}) {
    user.FocusByKeyboard(*box);
    user.Press(Key::selectAll);
    form.changes = 0;
    user.Type("0");
    EXPECT_EQ(form.changes, 1) << box->Name();
    EXPECT_EQ(box->Text(), "0");
  }
}

TEST_F(TextSurvival, UndoingAlsoUndoesInTheForm) {
  for (TextBox* box : {&form.txtLine, &form.txtLines}) {
    SCOPED_TRACE(box->Name());
    box->Text("a\r\nb");
    user.FocusByKeyboard(*box);
    box->SelStart(4);
    user.Type("c");
    EXPECT_EQ(box->Text(), "a\r\nbc");
    user.Undo();
    EXPECT_EQ(box->Text(), "a\r\nb");
  }
}

TEST_F(TextSurvival, OfARowsValue) {
  PropertyGridItem& row =
      form.suiRows.Add({.caption = "Zeile", .key = "k", .value = "a\r\n" + kNul + "b"});
  user.SelectItem(row);
  EXPECT_EQ(ToText(row.Value()), "a\r\n" + kNul + "b");
  user.Press(Key::end);
  user.Press(Key::left);
  user.Type("x");
  EXPECT_EQ(ToText(row.Value()), "a\r\n" + kNul + "xb");
  ExpectShown();
}

TEST_F(TextSurvival, SelectionsStayInStepBothWays) {
  form.txtLine.Text("a😀cd");
  user.FocusByKeyboard(form.txtLine);
  form.txtLine.SelStart(1);
  form.txtLine.SelLength(2);
  EXPECT_EQ(user.ShownSelection(form.txtLine), (UnitRange{1, 3}));
  form.txtLines.Text("a\r\nb\nc");
  user.FocusByKeyboard(form.txtLines);
  form.txtLines.SelStart(3);
  form.txtLines.SelLength(1);
  ExpectShown();
  user.Press(Key::end);
  EXPECT_EQ(form.txtLines.SelStart(), 6U);
  user.ClickInto(form.txtLines, 3);
  EXPECT_EQ(form.txtLines.SelStart(), 3U);
  ExpectShown();
}

}  // namespace
}  // namespace kvo
