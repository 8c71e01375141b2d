// Forms in native windows: captions, sizes, fonts, and destruction. tests/desktop covers user
// actions.
#include "host/win32/FormWindow.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include "host/headless/TextLines.h"
#include "host/win32/Fonts.h"
#include "host/win32/Twips.h"
#include "host/win32/WindowText.h"
#include "tests/desktop/AllForms.h"
#include "tests/desktop/SampleForm.h"
#include "tests/windows/Callback.h"
#include "tests/windows/win32/Win32User.h"

namespace kvo {
namespace {

class TwoBoxes final : public Form {
 public:
  TwoBoxes() : Form("Felder", {4500, 3000}) {}
  KVO_CONTROL(TextBox, txtLine, .at = {0, 0, 3000, 300});
  KVO_CONTROL(TextBox, txtLines, .at = {0, 400, 3000, 1200}, .multiLine = true);
};

class Forms : public testing::Test {
 protected:
  HWND Shown(const FormControl& control) { return user.View().WidgetOf(control); }

  HeadlessPlatform platform;
  PlatformScope scope{platform};
  SampleForm form;
  Win32User user{platform, form};
};

TEST_F(Forms, AmpersandsAreLiteralInEveryCaption) {
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

TEST_F(Forms, ClosingAListWithoutAChoiceIsNotAClick) {
  form.cboRows.AddItem("eins");
  form.cboRows.ListIndex(0);
  user.FocusByKeyboard(form.cboRows);
  SendMessageW(Shown(form.cboRows), CB_SHOWDROPDOWN, TRUE, 0);
  SetFocus(Shown(form.txtName));
  PumpMessages();
  EXPECT_FALSE(SendMessageW(Shown(form.cboRows), CB_GETDROPPEDSTATE, 0, 0));
  EXPECT_EQ(form.rowClicks, 0);
}

TEST_F(Forms, WindowsAndControlsMapToEachOther) {
  EXPECT_EQ(Shown(form.tmr), nullptr);
  EXPECT_EQ(user.View().ControlOf(Shown(form.txtInner)), &form.txtInner);
  EXPECT_EQ(GetParent(Shown(form.txtInner)), Shown(form.panA));
  EXPECT_EQ(user.View().ControlOf(user.View().Window()), nullptr);
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

TEST_F(Forms, TheFocusMatchesTheForm) {
  user.FocusByKeyboard(form.txtName);
  form.txtName.Enabled(false);
  PumpMessages();
  EXPECT_EQ(GetFocus(), Shown(form.chkA));
}

TEST_F(Forms, OnlyTheOpenTabIsVisible) {
  form.tabs.SelectedTab(1);
  EXPECT_TRUE(IsWindowVisible(Shown(form.chkInner)));
  EXPECT_FALSE(IsWindowVisible(Shown(form.txtInner)));
}

TEST_F(Forms, AGridKeepsTheFocusWhenItsRowsAreRemoved) {
  user.SelectItem(form.suiRows.Add({.caption = "eins", .key = "1", .value = "a"}));
  form.suiRows.Clear();
  PumpMessages();
  EXPECT_EQ(ChildOf(Shown(form.suiRows), WC_EDITW), nullptr);
  EXPECT_EQ(GetFocus(), Shown(form.suiRows));
}

TEST_F(Forms, AButtonInARowIsAsWideAsTheGrid) {
  auto& row = form.suiRows.Add({.kind = ItemKind::button, .caption = "Los & weg", .key = "b"});
  form.suiRows.Add({.caption = "Text", .key = "t"});
  const HWND button = ChildOf(Shown(form.suiRows), WC_BUTTONW);
  ASSERT_NE(button, nullptr);
  EXPECT_EQ(TextOf(button), L"Los && weg");
  EXPECT_EQ(Inside(button).right, Inside(Shown(form.suiRows)).right);
  row.Enabled(false);
  EXPECT_FALSE(IsWindowEnabled(button));
}

TEST_F(Forms, TheTabKeyReachesTheButtonOfAColourRow) {
  user.SelectItem(
      form.suiRows.Add({.kind = ItemKind::color, .caption = "Farbe", .value = "#FF0000"}));
  form.onButton = [] {};
  EXPECT_EQ(GetFocus(), ChildOf(Shown(form.suiRows), WC_EDITW));
  user.Press(Key::tab);
  EXPECT_EQ(GetFocus(), ChildOf(Shown(form.suiRows), WC_BUTTONW));
  user.Press(Key::enter);
  EXPECT_EQ(GetFocus(), ChildOf(Shown(form.suiRows), WC_EDITW));
}

// --- texts ---

TEST_F(Forms, AnotherProgramMayType) {
  TwoBoxes boxes;
  Win32User typist(platform, boxes);
  for (TextBox* box : {&boxes.txtLine, &boxes.txtLines}) {
    box->Text("alt");
    SetWindowTextW(typist.View().WidgetOf(*box), L"neu");
    EXPECT_EQ(box->Text(), "neu") << box->Name();
  }
}

TEST_F(Forms, AnotherProgramMaySelect) {
  form.txtName.Text("a😀cd");
  user.FocusByKeyboard(form.txtName);
  SendMessageW(Shown(form.txtName), EM_SETSEL, 1, -1);
  EXPECT_EQ(form.txtName.SelStart(), 1U);
  EXPECT_EQ(form.txtName.SelLength(), 3U);
}

// --- destruction ---

TEST_F(Forms, MayLoseTheirWindowWithItsParent) {
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
    SampleForm form;
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

// --- every page ---

TEST(Pages, LeaveTheTabKeyAfterTheirLastInputToTheHost) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  for (const NamedForm& named : AllForms()) {
    SCOPED_TRACE(named.name);
    Win32User user(platform, *named.form);
    const std::vector<FormControl*> stops = TabStops(*named.form);
    user.View().FocusFirst();
    EXPECT_EQ(named.form->Focused(), stops.front());
    user.View().FocusLast();
    EXPECT_EQ(named.form->Focused(), stops.back());
    MSG tab{GetFocus(), WM_KEYDOWN, VK_TAB, 1, 0, {}};
    EXPECT_FALSE(user.View().TranslateKey(tab));
  }
}

// Returns the space that a caption needs in Windows' own Tahoma. Wine measures its letters wider
// than it draws them.
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
      caption.resize(caption.find_last_not_of(' ') + 1);  // a trailing blank is invisible
      const HWND window = view.WidgetOf(*control);
      RECT area{};
      GetClientRect(window, &area);
      const SIZE room = RoomOf(*control, caption, label && label->Wraps());
      constexpr int kMark = 17;  // a check box or an option, and the gap next to it
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

TEST(Scaling, TahomaIsElevenPixelsHighAt96Dpi) {
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
