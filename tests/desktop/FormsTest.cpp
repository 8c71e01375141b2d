// Forms in a desktop's widgets: the effects of user actions, and the display of changes.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/desktop/DesktopUser.h"
#include "tests/desktop/SampleForm.h"

namespace kvo {
namespace {

class DesktopForms : public testing::Test {
 protected:
  DesktopForms() { form.log.clear(); }

  std::ptrdiff_t Logged(const char* event) const { return std::ranges::count(form.log, event); }
  void ExpectShown() { EXPECT_EQ(Misshown(user, form), ""); }

  HeadlessPlatform platform;
  PlatformScope scope{platform};
  SampleForm form;
  std::unique_ptr<DesktopUser> sitting{SitDown(platform, form)};
  DesktopUser& user{*sitting};
};

TEST_F(DesktopForms, AClickOnTheChosenOptionOrRowIsAClick) {
  user.Click(form.optA);
  user.Click(form.optA);
  user.Press(Key::space);
  EXPECT_EQ(form.optionClicks, 3);
  EXPECT_TRUE(form.optA.Value());
  ExpectShown();
  form.cboRows.AddItem("eins");
  form.cboRows.AddItem("zwei");
  form.cboRows.ListIndex(1);
  EXPECT_EQ(form.rowClicks, 0);
  user.Choose(form.cboRows, 1);
  user.Choose(form.cboRows, 1);
  EXPECT_EQ(form.rowClicks, 2);
  user.Press(Key::down);  // there is no row below
  EXPECT_EQ(form.rowClicks, 2);
  user.Press(Key::up);
  EXPECT_EQ(form.cboRows.ListIndex(), 0);
  EXPECT_EQ(form.rowClicks, 3);
  ExpectShown();
}

TEST_F(DesktopForms, ASelectionSurvivesLeavingItsBox) {
  form.txtName.Text("abc");
  user.FocusByKeyboard(form.txtName);
  user.Press(Key::selectAll);
  user.Press(Key::tab);
  EXPECT_NE(form.Focused(), &form.txtName);
  EXPECT_EQ(form.txtName.SelLength(), 3U);
  ExpectShown();
}

TEST_F(DesktopForms, ArrowKeysGoToTheEndsOfASelection) {
  form.txtName.Text("abc");
  user.FocusByKeyboard(form.txtName);
  user.Press(Key::selectAll);
  user.Press(Key::left);
  EXPECT_EQ(form.txtName.SelStart(), 0U);
  user.Press(Key::selectAll);
  user.Press(Key::right);
  EXPECT_EQ(form.txtName.SelStart(), 3U);
}

TEST_F(DesktopForms, ArrowKeysDoNotLeaveButtons) {
  for (FormControl* control : std::initializer_list<FormControl*>{&form.cmdFail, &form.chkA}) {
    user.FocusByKeyboard(*control);
    for (const Key key : {Key::left, Key::right, Key::up, Key::down}) user.Press(key);
    EXPECT_EQ(form.Focused(), control) << control->Name();
  }
}

TEST_F(DesktopForms, ProgrammaticChangesAreShownWithoutUserActions) {
  form.chkA.Value(true);
  EXPECT_EQ(Logged("check"), 1);  // by code, once
  form.optB.Value(true);
  ExpectShown();
  form.tabs.SelectedTab(1);
  ExpectShown();
  form.cboRows.AddItem("eins");
  EXPECT_EQ(form.cboRows.ListIndex(), kNoRow);
  ExpectShown();
  form.cboRows.ListIndex(0);
  EXPECT_EQ(Logged("choice"), 1);
  ExpectShown();
  form.cboRows.Clear();
  form.txtName.Enabled(false);
  form.lblName.Visible(false);
  form.lblName.Caption("neu");
  ExpectShown();
  user.Settle();
  EXPECT_EQ(Logged("choice"), 2);
  EXPECT_EQ(Logged("check"), 1);
  ExpectShown();
}

TEST_F(DesktopForms, ArrowKeysChooseOptions) {
  user.FocusByKeyboard(form.optA);
  EXPECT_FALSE(form.optA.Value());  // entering it does not choose it
  user.Press(Key::down);
  EXPECT_TRUE(form.optB.Value());
  EXPECT_EQ(form.Focused(), &form.optB);
  user.Press(Key::down);
  EXPECT_TRUE(form.optA.Value());
  user.Click(form.optA);  // a click on the chosen option keeps it
  EXPECT_TRUE(form.optA.Value());
  ExpectShown();
}

TEST_F(DesktopForms, WhatAPageThrowsIsReported) {
  EXPECT_THROW(user.Click(form.cmdFail), RuntimeError);
  user.FocusByKeyboard(form.cmdFail);
  EXPECT_THROW(user.Press(Key::enter), RuntimeError);
  EXPECT_THROW(user.Press(Key::space), RuntimeError);
  EXPECT_FALSE(user.IsBusy());
}

TEST_F(DesktopForms, KeepingTheFocusRaisesItsEventOnce) {
  user.FocusByKeyboard(form.chkA);
  user.FocusByKeyboard(form.txtName);
  EXPECT_EQ(Logged("focus"), 1);
  user.LookElsewhere();
  user.Type("a");
  EXPECT_EQ(Logged("focus"), 1);
  user.FocusByKeyboard(form.chkA);
  user.FocusByKeyboard(form.txtName);
  EXPECT_EQ(Logged("focus"), 2);
}

TEST_F(DesktopForms, DisabledAndHiddenControlsPassOnTheFocus) {
  user.FocusByKeyboard(form.txtName);
  form.txtName.Enabled(false);
  user.Settle();
  EXPECT_EQ(form.Focused(), &form.chkA);
  form.chkA.Visible(false);
  user.Settle();
  EXPECT_EQ(form.Focused(), &form.optA);
}

TEST_F(DesktopForms, TimersTickInRealTime) {
  user.FocusByKeyboard(form.chkA);
  form.log.clear();
  form.tmr.Start(10);
  EXPECT_TRUE(user.WaitUntil([&] { return form.log.size() >= 2; }));
  EXPECT_EQ(form.log[0], "tick");
  form.tmr.Stop();
  const std::size_t ticks = form.log.size();
  user.WaitUntil([] { return false; }, 100);
  EXPECT_EQ(form.log.size(), ticks);
}

// --- property grids ---

TEST_F(DesktopForms, AGridWithoutASelectedRowIsEnteredAtItsEnds) {
  auto& first = form.suiRows.Add({.kind = ItemKind::entry, .caption = "eins", .key = "1"});
  form.suiRows.Add({.kind = ItemKind::entry, .caption = "zwei", .key = "2"});
  auto& last = form.suiRows.Add({.kind = ItemKind::entry, .caption = "drei", .key = "3"});
  user.FocusByKeyboard(form.suiRows);
  user.Press(Key::left);
  EXPECT_EQ(form.suiRows.SelectedItem(), nullptr);
  user.Press(Key::up);
  EXPECT_EQ(form.suiRows.SelectedItem(), &last);
  user.Press(Key::home);
  EXPECT_EQ(form.suiRows.SelectedItem(), &first);
}

TEST_F(DesktopForms, ArrowKeysMoveThroughTheRowsOfAPropertyGrid) {
  auto& first = form.suiRows.Add({.caption = "eins", .key = "1", .value = "a"});
  auto& second = form.suiRows.Add({.caption = "zwei", .key = "2", .value = "b"});
  user.SelectItem(first);
  user.Type("x");
  EXPECT_EQ(ToText(first.Value()), "x");
  user.Press(Key::down);
  EXPECT_EQ(form.suiRows.SelectedItem(), &second);
  user.Type("yz");
  EXPECT_EQ(ToText(second.Value()), "yz");
  user.Press(Key::enter);
  user.Type("w");
  EXPECT_EQ(ToText(second.Value()), "w");
  ExpectShown();
  form.suiRows.Clear();
  user.Settle();
  EXPECT_EQ(form.suiRows.SelectedItem(), nullptr);
  EXPECT_EQ(form.Focused(), &form.suiRows);
  EXPECT_EQ(user.ShownValue(form.suiRows), std::nullopt);
}

TEST_F(DesktopForms, TheDeleteKeyReachesThePropertyGrid) {
  auto& row = form.suiRows.Add({.kind = ItemKind::entry, .caption = "eins", .key = "1"});
  form.suiRows.Add({.kind = ItemKind::entry, .caption = "zwei", .key = "2"});
  user.SelectItem(row);
  EXPECT_EQ(form.suiRows.SelectedItem(), &row);
  form.log.clear();
  user.Press(Key::del);
  EXPECT_EQ(form.log, std::vector<std::string>{"delete"});
  form.suiRows.Remove(row);
  EXPECT_EQ(form.suiRows.SelectedItem(), nullptr);
  user.Settle();
  EXPECT_EQ(form.suiRows.SelectedItem(), nullptr);
}

TEST_F(DesktopForms, AButtonRowCanBePressed) {
  int clicks = 0;
  auto& row = form.suiRows.Add({.kind = ItemKind::button, .caption = "Los & weg", .key = "b"});
  form.suiRows.Add({.caption = "Text", .key = "t"});
  form.onButton = [&] { ++clicks; };
  user.ClickButton(row);
  EXPECT_EQ(clicks, 1);
  user.Press(Key::space);
  EXPECT_EQ(clicks, 2);
  user.Press(Key::enter);
  EXPECT_EQ(clicks, 3);
  row.Enabled(false);
  user.Press(Key::space);
  EXPECT_EQ(clicks, 3);
}

TEST_F(DesktopForms, ARowsButtonMayRemoveItsRow) {
  auto& row = form.suiRows.Add({.kind = ItemKind::button, .caption = "Weg", .key = "b"});
  form.onButton = [&] { form.suiRows.Clear(); };
  user.ClickButton(row);
  EXPECT_TRUE(form.suiRows.Items().empty());
  auto& color = form.suiRows.Add({.kind = ItemKind::color, .caption = "Farbe", .value = "#FF0000"});
  user.ClickButton(color);
  EXPECT_TRUE(form.suiRows.Items().empty());
}

// A message box does so.
TEST_F(DesktopForms, AnEventMayRunItsOwnEventLoop) {
  auto& row = form.suiRows.Add({.kind = ItemKind::color, .caption = "Farbe", .value = "#FF0000"});
  bool ticked = false;
  form.onButton = [&] {
    EXPECT_TRUE(user.IsBusy());
    form.log.clear();
    form.tmr.Start(10);
    ticked = user.WaitUntil([&] { return Logged("tick") > 0; });
    form.suiRows.Clear();
    form.tabs.SelectedTab(1);
    user.Settle();
  };
  user.ClickButton(row);
  EXPECT_TRUE(ticked);
  EXPECT_FALSE(user.IsBusy());
  EXPECT_EQ(user.ShownValue(form.suiRows), std::nullopt);
  ExpectShown();
}

TEST_F(DesktopForms, AChosenValueMayBeOverwritten) {
  auto& list = form.suiRows.Add({.kind = ItemKind::list, .caption = "Liste", .key = "l"});
  list.AddChoice("eins", 1);
  user.Choose(list, "eins");
  user.Type("x");
  EXPECT_EQ(ToText(list.Value()), "x");
  ExpectShown();
}

TEST_F(DesktopForms, TheTabKeyGoesThroughAColourRow) {
  auto& row = form.suiRows.Add({.kind = ItemKind::color, .caption = "Farbe", .value = "#FF0000"});
  int clicks = 0;
  form.onButton = [&] {
    ++clicks;
    row.Value("#00FF00");
  };
  user.ClickButton(row);
  EXPECT_EQ(clicks, 1);
  user.Type("y");
  EXPECT_EQ(ToText(row.Value()), "y");
  user.Press(Key::tab);
  user.Press(Key::enter);
  EXPECT_EQ(clicks, 2);
  EXPECT_EQ(ToText(row.Value()), "#00FF00");
  user.Type("z");  // it may be overwritten
  EXPECT_EQ(ToText(row.Value()), "z");
  user.Press(Key::tab);
  user.Press(Key::shiftTab);
  user.Type("a");
  EXPECT_TRUE(ToText(row.Value()).ends_with('a'));
  EXPECT_EQ(clicks, 2);
  user.Press(Key::shiftTab);
  EXPECT_EQ(form.Focused(), &form.cboRows);
}

TEST_F(DesktopForms, AnEditableListRowAcceptsTextAndChoices) {
  auto& row = form.suiRows.Add({.kind = ItemKind::list, .caption = "Liste", .value = "frei"});
  row.AddChoice("eins", 1);
  row.AddChoice("zwei", 2);
  user.SelectItem(row);
  user.Type("einzs");
  EXPECT_EQ(ToText(row.Value()), "einzs");
  user.Choose(row, "zwei");
  EXPECT_EQ(ToText(row.Value()), "zwei");
  user.Press(Key::home);
  user.Type("x");
  user.Type("y");
  EXPECT_EQ(ToText(row.Value()), "xyzwei");
  ExpectShown();
}

}  // namespace
}  // namespace kvo
