// Forms on windows: what shows, in what order, how large, and what user actions do.
#include "host/win32/FormWindow.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "common/values/RuntimeError.h"
#include "host/headless/TextLines.h"
#include "host/win32/Fonts.h"
#include "host/win32/Twips.h"
#include "host/win32/WindowText.h"
#include "tests/forms/FakeRecordset.h"
#include "tests/pages/FakeOffice.h"
#include "tests/qt/AllForms.h"
#include "tests/windows/Callback.h"
#include "tests/windows/win32/Win32User.h"

namespace kvo {
namespace {

class Sample final : public Form {
 public:
  Sample() : Form("Muster & Co", {6000, 4500}) {}
  KVO_CONTROL(Label, lblName, .caption = "R&D && <b>x</b>", .at = {0, 0, 1500, 240});
  KVO_CONTROL(
      TextBox, txtName, .at = {1600, 0, 1500, 300},
      .onGotFocus = [this](TextBox&) { log.emplace_back("focus"); });
  KVO_CONTROL(
      CheckBox, chkA, .caption = "A & B", .at = {0, 400, 1500, 240},
      .onClick = [this](CheckBox&) { log.emplace_back("check"); });
  KVO_CONTROL(
      OptionButton, optA, .caption = "eins & zwei", .at = {0, 700, 1500, 240},
      .onClick = [this](OptionButton&) { ++optionClicks; });
  KVO_CONTROL(OptionButton, optB, .caption = "drei", .at = {0, 1000, 1500, 240});
  KVO_CONTROL(
      CommandButton, cmdFail, .caption = "Los & weg", .at = {0, 1300, 1500, 360},
      .onClick = [](CommandButton&) { throw RuntimeError(ErrorNumber::typeMismatch); });
  KVO_CONTROL(Frame, fraBox, .caption = "Rahmen & mehr", .at = {0, 1700, 3000, 600});
  KVO_CONTROL(TabControl, tabs, .at = {0, 2400, 3000, 1000});
  KVO_CONTROL_IN(tabs, TabPanel, panA, .caption = "T & U");
  KVO_CONTROL_IN(panA, TextBox, txtInner, .at = {0, 0, 900, 300});
  KVO_CONTROL_IN(tabs, TabPanel, panB, .caption = "zwei");
  KVO_CONTROL_IN(panB, CheckBox, chkInner, .caption = "c", .at = {0, 0, 900, 300});
  KVO_CONTROL(
      ComboBox, cboRows, .at = {3200, 0, 1500, 300},
      .onChange = [this](ComboBox&) { log.emplace_back("choice"); },
      .onClick = [this](ComboBox&) { ++rowClicks; });
  KVO_CONTROL(
      PropertyGrid, suiRows, .at = {3200, 400, 1500, 1500},
      .onButtonClick = [this](PropertyGridItem&) { onButton(); },
      .onDeleteKey = [this](PropertyGrid&) { log.emplace_back("delete"); });
  KVO_CONTROL(
      Timer, tmr, .onTick = [this](Timer&) { log.emplace_back("tick"); });
  std::vector<std::string> log;
  int optionClicks = 0;
  int rowClicks = 0;
  std::function<void()> onButton;
};

bool IsChecked(HWND button) { return SendMessageW(button, BM_GETCHECK, 0, 0) == BST_CHECKED; }

class Forms : public testing::Test {
 protected:
  HWND Shown(const FormControl& control) { return user.View().WidgetOf(control); }

  HeadlessPlatform platform;
  PlatformScope scope{platform};
  Sample form;
  Win32User user{platform, form};
};

TEST_F(Forms, AmpersandsAreCharactersInEveryCaption) {
  EXPECT_EQ(TextOf(Shown(form.lblName)), L"R&D && <b>x</b>");
  EXPECT_TRUE(GetWindowLongW(Shown(form.lblName), GWL_STYLE) & SS_NOPREFIX);
  EXPECT_EQ(TextOf(Shown(form.chkA)), L"A && B");
  EXPECT_EQ(TextOf(Shown(form.optA)), L"eins && zwei");
  EXPECT_EQ(TextOf(Shown(form.cmdFail)), L"Los && weg");
  EXPECT_EQ(TextOf(Shown(form.fraBox)), L"Rahmen && mehr");
  wchar_t text[32]{};
  TCITEMW tab{};
  tab.mask = TCIF_TEXT;
  tab.pszText = text;
  tab.cchTextMax = 32;
  SendMessageW(Shown(form.tabs), TCM_GETITEMW, 0, reinterpret_cast<LPARAM>(&tab));
  EXPECT_STREQ(text, L"T && U");
}

TEST_F(Forms, AClickOnWhatIsChosenIsAClick) {
  user.Click(form.optA);
  user.Click(form.optA);
  user.Press(Key::space);
  EXPECT_EQ(form.optionClicks, 3);
  EXPECT_TRUE(IsChecked(Shown(form.optA)));
  form.cboRows.AddItem("eins");
  form.cboRows.AddItem("zwei");
  form.cboRows.ListIndex(1);
  EXPECT_EQ(form.rowClicks, 0);
  user.Choose(form.cboRows, 1);
  user.Choose(form.cboRows, 1);
  EXPECT_EQ(form.rowClicks, 2);
  user.Press(Key::down);  // there is no row below it
  EXPECT_EQ(form.rowClicks, 2);
  user.Press(Key::up);
  EXPECT_EQ(form.cboRows.ListIndex(), 0);
  EXPECT_EQ(form.rowClicks, 3);
}

TEST_F(Forms, AListThatIsClosedUnchosenTakesNoClick) {
  form.cboRows.AddItem("eins");
  form.cboRows.ListIndex(0);
  user.FocusByKeyboard(form.cboRows);
  SendMessageW(Shown(form.cboRows), CB_SHOWDROPDOWN, TRUE, 0);
  SetFocus(Shown(form.txtName));
  PumpMessages();
  EXPECT_FALSE(SendMessageW(Shown(form.cboRows), CB_GETDROPPEDSTATE, 0, 0));
  EXPECT_EQ(form.rowClicks, 0);
}

TEST_F(Forms, WindowsAndControlsFindEachOther) {
  EXPECT_EQ(Shown(form.tmr), nullptr);
  EXPECT_EQ(user.View().ControlOf(Shown(form.txtInner)), &form.txtInner);
  EXPECT_EQ(GetParent(Shown(form.txtInner)), Shown(form.panA));
  EXPECT_EQ(user.View().ControlOf(user.View().Window()), nullptr);
}

TEST_F(Forms, ProgrammaticChangesShowAndRaiseNoUserActions) {
  form.chkA.Value(true);
  EXPECT_TRUE(IsChecked(Shown(form.chkA)));
  EXPECT_EQ(std::ranges::count(form.log, "check"), 1);  // by code, once
  form.optB.Value(true);
  EXPECT_TRUE(IsChecked(Shown(form.optB)));
  EXPECT_FALSE(IsChecked(Shown(form.optA)));
  form.tabs.SelectedTab(1);
  EXPECT_EQ(SendMessageW(Shown(form.tabs), TCM_GETCURSEL, 0, 0), 1);
  EXPECT_TRUE(IsWindowVisible(Shown(form.chkInner)));
  EXPECT_FALSE(IsWindowVisible(Shown(form.txtInner)));
  const HWND list = Shown(form.cboRows);
  form.cboRows.AddItem("eins");
  EXPECT_EQ(SendMessageW(list, CB_GETCURSEL, 0, 0), -1);
  form.cboRows.ListIndex(0);
  EXPECT_EQ(TextOf(list), L"eins");
  EXPECT_EQ(std::ranges::count(form.log, "choice"), 1);
  form.cboRows.Clear();
  EXPECT_EQ(SendMessageW(list, CB_GETCOUNT, 0, 0), 0);
  form.txtName.Enabled(false);
  EXPECT_FALSE(IsWindowEnabled(Shown(form.txtName)));
  form.lblName.Visible(false);
  EXPECT_FALSE(IsWindowVisible(Shown(form.lblName)));
  PumpMessages();
  EXPECT_EQ(std::ranges::count(form.log, "choice"), 2);
}

TEST_F(Forms, BoxesHaveTheDesktopsColours) {
  const HDC device = GetDC(nullptr);
  const auto brush = [&] {
    return SendMessageW(user.View().Window(), WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(device),
                        reinterpret_cast<LPARAM>(Shown(form.txtName)));
  };
  const auto face = reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_BTNFACE));
  EXPECT_NE(brush(), face);
  form.txtName.BackColor(SystemColor::buttonFace);
  EXPECT_EQ(brush(), face);
  EXPECT_EQ(GetBkColor(device), GetSysColor(COLOR_BTNFACE));
  ReleaseDC(nullptr, device);
}

TEST_F(Forms, OptionsAreSteppedThroughWithTheArrowKeys) {
  user.FocusByKeyboard(form.optA);
  EXPECT_FALSE(form.optA.Value());  // being entered does not choose it
  user.Press(Key::down);
  EXPECT_TRUE(form.optB.Value());
  EXPECT_EQ(form.Focused(), &form.optB);
  user.Press(Key::down);
  EXPECT_TRUE(form.optA.Value());
  user.Click(form.optA);  // once chosen, a click leaves it so
  EXPECT_TRUE(form.optA.Value());
  EXPECT_TRUE(IsChecked(Shown(form.optA)));
}

TEST_F(Forms, WhatAPageThrowsIsReported) {
  EXPECT_THROW(user.Click(form.cmdFail), RuntimeError);
  user.FocusByKeyboard(form.cmdFail);
  EXPECT_THROW(user.Press(Key::enter), RuntimeError);
  EXPECT_THROW(user.Press(Key::space), RuntimeError);
  EXPECT_FALSE(user.View().IsBusy());
}

TEST_F(Forms, AFocusThatStaysInItsBoxRaisesItsEventOnce) {
  form.log.clear();
  user.FocusByKeyboard(form.chkA);
  user.FocusByKeyboard(form.txtName);
  EXPECT_EQ(form.log, std::vector<std::string>{"focus"});
  {
    const TestFrame other({100, 100});
    ShowWindow(other.Window(), SW_SHOW);
    SetFocus(other.Strip());
    PumpMessages();
  }
  user.FocusByKeyboard(form.txtName);
  EXPECT_EQ(form.log.size(), 1U);
  user.FocusByKeyboard(form.chkA);
  user.FocusByKeyboard(form.txtName);
  EXPECT_EQ(form.log.size(), 2U);
}

TEST_F(Forms, ADisabledBoxHandsItsFocusOn) {
  user.FocusByKeyboard(form.txtName);
  form.txtName.Enabled(false);
  PumpMessages();
  EXPECT_EQ(form.Focused(), &form.chkA);
  EXPECT_EQ(GetFocus(), Shown(form.chkA));
  form.chkA.Visible(false);
  PumpMessages();
  EXPECT_EQ(form.Focused(), &form.optA);
}

TEST_F(Forms, TimersTickInRealTime) {
  user.FocusByKeyboard(form.chkA);
  form.log.clear();
  form.tmr.Start(10);
  EXPECT_TRUE(PumpUntil([&] { return form.log.size() >= 2; }));
  EXPECT_EQ(form.log[0], "tick");
  form.tmr.Stop();
  const std::size_t ticks = form.log.size();
  PumpUntil([] { return false; }, 100);
  EXPECT_EQ(form.log.size(), ticks);
}

TEST_F(Forms, TheDeleteKeyReachesThePropertyGrid) {
  auto& row = form.suiRows.Add({.kind = ItemKind::entry, .caption = "eins", .key = "1"});
  form.suiRows.Add({.kind = ItemKind::entry, .caption = "zwei", .key = "2"});
  user.SelectItem(row);
  EXPECT_EQ(form.suiRows.SelectedItem(), &row);
  form.log.clear();
  user.Press(Key::del);
  EXPECT_EQ(form.log, std::vector<std::string>{"delete"});
  form.suiRows.Remove(row);
  PumpMessages();
  EXPECT_EQ(form.suiRows.SelectedItem(), nullptr);
}

TEST_F(Forms, ArrowKeysGoThroughTheRowsOfAPropertyGrid) {
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
  form.suiRows.Clear();
  PumpMessages();
  EXPECT_EQ(form.suiRows.SelectedItem(), nullptr);
  EXPECT_EQ(ChildOf(Shown(form.suiRows), WC_EDITW), nullptr);
  EXPECT_EQ(GetFocus(), Shown(form.suiRows));
}

TEST_F(Forms, AButtonInARowIsAsWideAsTheGrid) {
  int clicks = 0;
  auto& row = form.suiRows.Add({.kind = ItemKind::button, .caption = "Los & weg", .key = "b"});
  form.suiRows.Add({.caption = "Text", .key = "t"});
  const HWND button = ChildOf(Shown(form.suiRows), WC_BUTTONW);
  ASSERT_NE(button, nullptr);
  EXPECT_EQ(TextOf(button), L"Los && weg");
  RECT inside{};
  RECT own{};
  GetClientRect(Shown(form.suiRows), &inside);
  GetClientRect(button, &own);
  EXPECT_EQ(own.right, inside.right);
  form.onButton = [&] { ++clicks; };
  user.ClickButton(row);
  EXPECT_EQ(clicks, 1);
  user.Press(Key::space);
  EXPECT_EQ(clicks, 2);
  user.Press(Key::enter);
  EXPECT_EQ(clicks, 3);
  row.Enabled(false);
  EXPECT_FALSE(IsWindowEnabled(button));
  user.Press(Key::space);
  EXPECT_EQ(clicks, 3);
}

TEST_F(Forms, ARowsButtonMayTakeItsRowAway) {
  auto& row = form.suiRows.Add({.kind = ItemKind::button, .caption = "Weg", .key = "b"});
  form.onButton = [&] { form.suiRows.Clear(); };
  user.ClickButton(row);
  EXPECT_TRUE(form.suiRows.Items().empty());
  auto& color = form.suiRows.Add({.kind = ItemKind::color, .caption = "Farbe", .value = "#FF0000"});
  user.ClickButton(color);
  EXPECT_TRUE(form.suiRows.Items().empty());
}

// As a message box does.
TEST_F(Forms, AnEventMayRunTheMessagesMeanwhile) {
  auto& row = form.suiRows.Add({.kind = ItemKind::color, .caption = "Farbe", .value = "#FF0000"});
  bool ticked = false;
  form.onButton = [&] {
    EXPECT_TRUE(user.View().IsBusy());
    form.log.clear();
    form.tmr.Start(10);
    ticked = PumpUntil([&] { return std::ranges::count(form.log, "tick") > 0; });
    form.suiRows.Clear();
    form.tabs.SelectedTab(1);
    PumpMessages();
  };
  user.ClickButton(row);
  EXPECT_TRUE(ticked);
  EXPECT_FALSE(user.View().IsBusy());
  EXPECT_EQ(ChildOf(Shown(form.suiRows), WC_EDITW), nullptr);
  EXPECT_TRUE(IsWindowVisible(Shown(form.chkInner)));
}

TEST_F(Forms, ArrowKeysGoToTheEndsOfASelection) {
  form.txtName.Text("abc");
  user.FocusByKeyboard(form.txtName);
  user.Press(Key::selectAll);
  user.Press(Key::left);
  EXPECT_EQ(form.txtName.SelStart(), 0U);
  user.Press(Key::selectAll);
  user.Press(Key::right);
  EXPECT_EQ(form.txtName.SelStart(), 3U);
}

TEST_F(Forms, AChosenValueMayBeTypedOver) {
  auto& list = form.suiRows.Add({.kind = ItemKind::list, .caption = "Liste", .key = "l"});
  list.AddChoice("eins", 1);
  user.Choose(list, "eins");
  user.Type("x");
  EXPECT_EQ(ToText(list.Value()), "x");
  auto& color = form.suiRows.Add({.kind = ItemKind::color, .caption = "Farbe", .key = "c"});
  form.onButton = [&] { color.Value("#FF0000"); };
  user.ClickButton(color);
  user.Type("y");
  EXPECT_EQ(ToText(color.Value()), "y");
}

TEST_F(Forms, AnEditableListOfARowTakesTextAndChoices) {
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
}

TEST_F(Forms, TheTabKeyGoesThroughAColourRow) {
  auto& row = form.suiRows.Add({.kind = ItemKind::color, .caption = "Farbe", .value = "#FF0000"});
  int clicks = 0;
  form.onButton = [&] { ++clicks; };
  user.SelectItem(row);
  EXPECT_EQ(GetFocus(), ChildOf(Shown(form.suiRows), WC_EDITW));
  user.Press(Key::tab);
  EXPECT_EQ(GetFocus(), ChildOf(Shown(form.suiRows), WC_BUTTONW));
  user.Press(Key::enter);
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(GetFocus(), ChildOf(Shown(form.suiRows), WC_EDITW));  // to be typed over
  user.Press(Key::tab);
  user.Press(Key::shiftTab);
  EXPECT_EQ(GetFocus(), ChildOf(Shown(form.suiRows), WC_EDITW));
  user.Press(Key::shiftTab);
  EXPECT_EQ(form.Focused(), &form.cboRows);
}

// --- the end ---

TEST_F(Forms, MayLoseTheirWindowToItsParent) {
  DestroyWindow(user.Frame());
  EXPECT_EQ(user.View().Window(), nullptr);
  EXPECT_EQ(Shown(form.txtName), nullptr);
  form.txtName.Text("danach");
  form.txtName.Enabled(false);
  form.cboRows.AddItem("eins");
  form.suiRows.Add({.caption = "Zeile", .value = "a"});
  form.tmr.Start(10);
  PumpMessages();
  EXPECT_EQ(form.txtName.Text(), "danach");
}

TEST(FormWindows, LeaveNothingBehind) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  const TestFrame frame({600, 400});
  const auto show = [&] {
    Sample form;
    form.suiRows.Add({.kind = ItemKind::color, .caption = "Farbe", .value = "#FF0000"});
    FormWindow window(form, frame.Window());
    ShowWindow(window.Window(), SW_SHOWNA);
    UpdateWindow(window.Window());
  };
  const auto count = [](DWORD kind) { return GetGuiResources(GetCurrentProcess(), kind); };
  const auto children = [&] {
    int found = 0;
    EnumChildWindows(frame.Window(), Callback([](HWND, LPARAM to) {
                       ++*reinterpret_cast<int*>(to);
                       return TRUE;
                     }),
                     reinterpret_cast<LPARAM>(&found));
    return found;
  };
  show();
  const DWORD objects = count(GR_GDIOBJECTS);
  const DWORD windows = count(GR_USEROBJECTS);
  DWORD handles = 0;
  GetProcessHandleCount(GetCurrentProcess(), &handles);
  for (int turn = 0; turn < 200; ++turn) show();
  constexpr DWORD kSome = 5;
  EXPECT_LE(count(GR_GDIOBJECTS), objects + kSome);
  EXPECT_LE(count(GR_USEROBJECTS), windows + kSome);
  DWORD now = 0;
  GetProcessHandleCount(GetCurrentProcess(), &now);
  EXPECT_LE(now, handles + kSome);
  EXPECT_EQ(children(), 1);  // the frame's own
}

// --- the data grid ---

class Records final : public Form {
 public:
  Records() : Form("Sätze", {6000, 3000}) {}
  KVO_CONTROL(Grid, grid, .at = {0, 0, 6000, 3000});
};

class DataGrids : public testing::Test {
 protected:
  DataGrids() {
    const std::map<std::string, Variant> record = {{"no", "1"}};
    table.rows.assign(100'000, record);
    platform.recordsets = [this] { return std::make_shared<FakeRecordset>(table); };
    form.grid.AddColumn(
        {.caption = "Nr & mehr", .field = "no", .sortHint = "Sortieren", .size = 100});
  }
  void Paint(HWND list) {
    InvalidateRect(list, nullptr, TRUE);
    UpdateWindow(list);
  }

  FakeTable table;
  HeadlessPlatform platform;
  PlatformScope scope{platform};
  Records form;
};

TEST_F(DataGrids, FetchOnlyWhatShowsOfManyRows) {
  Win32User user(platform, form);
  form.grid.Rebind();
  const HWND list = user.View().WidgetOf(form.grid);
  EXPECT_EQ(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0), 100'000);
  Paint(list);
  EXPECT_GT(table.fetched, 0U);
  SendMessageW(list, LVM_ENSUREVISIBLE, 99'999, FALSE);
  Paint(list);
  EXPECT_LT(table.fetched, 2000U);
  user.SelectRows(form.grid, {99'999, 50'000});
  EXPECT_EQ(form.grid.SelectedRows(), (std::vector<std::size_t>{50'000, 99'999}));
  EXPECT_LT(table.fetched, 3000U);
  form.grid.Unbind();
  EXPECT_EQ(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0), 0);
  EXPECT_EQ(SendMessageW(list, LVM_GETSELECTEDCOUNT, 0, 0), 0);
}

TEST_F(DataGrids, ADatabaseThatGoesIsReportedOnce) {
  Win32User user(platform, form);
  int failures = 0;
  user.View().onFailure = [&](const std::exception&) { ++failures; };
  form.grid.Rebind();
  const HWND list = user.View().WidgetOf(form.grid);
  Paint(list);
  table.gone = true;
  SendMessageW(list, LVM_ENSUREVISIBLE, 99'999, FALSE);
  Paint(list);
  EXPECT_EQ(failures, 0);  // not while it paints
  PumpMessages();
  EXPECT_EQ(failures, 1);
}

// --- every page ---

TEST(Pages, TheTabKeyGoesInTheOrderOfDeclaration) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  for (const NamedForm& named : AllForms()) {
    SCOPED_TRACE(named.name);
    Win32User user(platform, *named.form);
    std::vector<const FormControl*> expected;
    bool option = false;  // of a group, only the first is a stop
    for (const FormControl* control : named.form->AllControls()) {
      const bool isOption = dynamic_cast<const OptionButton*>(control) != nullptr;
      if (control->TakesFocus() && control->IsReachable() && !(isOption && option))
        expected.push_back(control);
      option = option || isOption;
    }
    ASSERT_FALSE(expected.empty());
    user.View().FocusFirst();
    std::vector<const FormControl*> found = {named.form->Focused()};
    while (found.size() < expected.size()) {
      user.Press(Key::tab);
      found.push_back(named.form->Focused());
    }
    for (std::size_t at = 0; at < expected.size(); ++at) {
      ASSERT_NE(found[at], nullptr);
      EXPECT_EQ(found[at]->Name(), expected[at]->Name());
    }
    user.View().FocusLast();
    EXPECT_EQ(named.form->Focused(), expected.back());
    MSG tab{GetFocus(), WM_KEYDOWN, VK_TAB, 1, 0, {}};
    EXPECT_FALSE(user.View().TranslateKey(tab));  // the host's
  }
}

// The room that a caption takes in Windows' own Tahoma. Wine measures its letters wider than it
// draws them.
SIZE RoomOf(const FormControl& control, const std::string& caption, bool wraps) {
  constexpr int kLine = 13;
  const FontWeight weight = control.TextFont().weight;
  if (!wraps) return {ToPixels(TahomaTextWidth(caption, weight)), kLine};
  const auto lines = TextLines(caption, weight, control.At().width);
  return {0, kLine * static_cast<LONG>(lines.size())};
}

TEST(Captions, AreNotCutOff) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  const TestFrame frame({100, 100});
  std::size_t seen = 0;
  for (const NamedForm& named : AllForms()) {
    const FormWindow view(*named.form, frame.Window());
    for (const FormControl* control : named.form->AllControls()) {
      const auto* label = dynamic_cast<const Label*>(control);
      const auto* check = dynamic_cast<const CheckBox*>(control);
      const auto* option = dynamic_cast<const OptionButton*>(control);
      const auto* button = dynamic_cast<const CommandButton*>(control);
      if (!label && !check && !option && !button) continue;
      SCOPED_TRACE(named.name + "." + std::string(control->Name()));
      std::string caption(label    ? std::string_view(label->Caption())
                          : check  ? check->Caption()
                          : option ? option->Caption()
                                   : button->Caption());
      caption.resize(caption.find_last_not_of(' ') + 1);  // nobody misses a blank
      const HWND window = view.WidgetOf(*control);
      RECT area{};
      GetClientRect(window, &area);
      const SIZE room = RoomOf(*control, caption, label && label->Wraps());
      constexpr int kMark = 17;  // a check box or an option, and the air beside it
      constexpr int kEdges = 6;  // of a push button
      EXPECT_LE(room.cx + (check || option ? kMark : button ? kEdges : 0), area.right);
      EXPECT_LE(room.cy, area.bottom);
      ++seen;
    }
  }
  EXPECT_GT(seen, 40U);
}

TEST(Scaling, FollowsTheScreensLogicalResolution) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  const TestFrame frame({100, 100});
  for (const NamedForm& named : AllForms()) {
    const FormWindow view(*named.form, frame.Window());
    const double pixels = ScreenResolution() / 1440.0;
    EXPECT_NEAR(FormWindow::PixelSize(*named.form).cx, named.form->FormSize().width * pixels, 0.51);
    for (const FormControl* control : named.form->AllControls()) {
      const HWND window = view.WidgetOf(*control);
      if (window == nullptr || dynamic_cast<const TabPanel*>(control)) continue;
      SCOPED_TRACE(named.name + "." + std::string(control->Name()));
      RECT at{};
      GetWindowRect(window, &at);
      const FormControl* parent = control->Parent().AsControl();
      const HWND around =
          parent == nullptr ? view.Window() : view.WidgetOf(*parent->Parent().AsControl());
      MapWindowPoints(nullptr, around, reinterpret_cast<POINT*>(&at), 2);
      const int down = parent == nullptr ? 0 : kTabRowHeight;
      EXPECT_NEAR(at.left, control->At().left * pixels, 0.51);
      EXPECT_NEAR(at.top, (control->At().top + down) * pixels, 1.01);
      EXPECT_NEAR(at.right - at.left, control->At().width * pixels, 1.01);
      EXPECT_NEAR(at.bottom - at.top, control->At().height * pixels, 1.01);
    }
  }
}

TEST(Scaling, TahomaIsElevenPixelsHighAt96Dots) {
  LOGFONTW font{};
  GetObjectW(FontOf({}), sizeof(font), &font);
  EXPECT_EQ(font.lfHeight, -MulDiv(11, ScreenResolution(), 96));
  EXPECT_STREQ(font.lfFaceName, L"Tahoma");
  EXPECT_EQ(FontOf({}), FontOf({}));
  EXPECT_NE(FontOf({}), FontOf(kBoldFont));
  EXPECT_EQ(ToPixels(-1500), -ToPixels(1500));
}

}  // namespace
}  // namespace kvo
