#include <gtest/gtest.h>

#include "common/values/RuntimeError.h"
#include "tests/core/ErrorOf.h"
#include "tests/support/SeeingUser.h"

namespace kvo {
namespace {

// A form with every kind of simple control. Logs its events.
class SampleForm final : public Form {
 public:
  SampleForm() : Form("Probe", {6000, 4000}) {}

  std::vector<std::string> events;

  KVO_CONTROL(Label, lblName, .caption = "Name:");
  KVO_CONTROL(
      TextBox, txtName, .onChange = [this](TextBox&) { events.push_back("txtName_Change"); },
      .onGotFocus = SelectAllText);
  KVO_CONTROL(TextBox, txtLines, .multiLine = true);
  KVO_CONTROL(
      ComboBox, cboAny, .editable = true,
      .onChange = [this](ComboBox&) { events.push_back("cboAny_Change"); });
  KVO_CONTROL(
      ComboBox, cboKeyed, .onChange = [this](ComboBox&) { events.push_back("cboKeyed_Change"); },
      .onClick = [this](ComboBox&) { events.push_back("cboKeyed_Click"); });
  KVO_CONTROL(
      CheckBox, chkOn, .onClick = [this](CheckBox&) { events.push_back("chkOn_Click"); });
  KVO_CONTROL(
      OptionButton, optA, .onClick = [this](OptionButton&) { events.push_back("optA"); });
  KVO_CONTROL(
      OptionButton, optB, .onClick = [this](OptionButton&) { events.push_back("optB"); });
  KVO_CONTROL(TabControl, tabs, );
  KVO_CONTROL_IN(tabs, TabPanel, panFirst, .caption = "Eins");
  KVO_CONTROL_IN(panFirst, TextBox, txtFirst, );
  KVO_CONTROL_IN(panFirst, OptionButton, optInner, );
  KVO_CONTROL_IN(tabs, TabPanel, panSecond, .caption = "Zwei");
  KVO_CONTROL_IN(panSecond, TextBox, txtSecond, );
  KVO_CONTROL(
      Timer, timer, .onTick = [this](Timer&) { events.push_back("tick"); });
  KVO_CONTROL(
      CommandButton, cmdOk, .role = CommandButton::Role::acceptsDialog,
      .onClick = [this](CommandButton&) {
        events.push_back("cmdOk_Click");
        Unload();
      });
  KVO_CONTROL(
      CommandButton, cmdCancel, .role = CommandButton::Role::cancelsDialog,
      .onClick = [this](CommandButton&) { events.push_back("cmdCancel_Click"); });
};

class Forms : public testing::Test {
 protected:
  using Events = std::vector<std::string>;
  HeadlessPlatform platform;
  PlatformScope scope{platform};
  SampleForm form;
  SeeingUser user{platform, form};
};

TEST_F(Forms, ControlsAreFoundByName) {
  EXPECT_EQ(form.Find("txtName"), &form.txtName);
  EXPECT_EQ(form.Find("txtSecond"), &form.txtSecond);
  EXPECT_EQ(form.Find("txtname"), nullptr);
  EXPECT_EQ(form.Find("txtName", 1), nullptr);
}

TEST_F(Forms, AssigningTextRaisesTheChangeEventOnlyForNewText) {
  form.txtName.Text("a");
  form.txtName.Text("a");
  EXPECT_EQ(form.events, Events{"txtName_Change"});
  EXPECT_EQ(user.seen, (std::vector<SeeingUser::Seen>{{"txtName", Aspect::text}}));
}

TEST_F(Forms, TypingReplacesTheSelectionAndRaisesAnEventForEachKey) {
  form.txtName.Text("alt");
  form.events.clear();
  user.FocusByKeyboard(form.txtName);
  EXPECT_EQ(form.txtName.SelLength(), 3U);
  user.Type("neu");
  EXPECT_EQ(form.txtName.Text(), "neu");
  EXPECT_EQ(form.events, (Events{"txtName_Change", "txtName_Change", "txtName_Change"}));
}

// Would take minutes if each key copied the text.
TEST_F(Forms, TypingALongTextTakesNoLongerPerKey) {
  constexpr std::size_t kKeys = 300'000;
  std::string typed;
  for (std::size_t key = 0; key < kKeys; ++key) typed += key % 3 == 0 ? "ä" : "x";
  user.FocusByKeyboard(form.txtName);
  user.Type(typed);
  EXPECT_EQ(form.txtName.Text(), typed);
  EXPECT_EQ(form.txtName.SelStart(), kKeys);
  EXPECT_EQ(form.events.size(), kKeys);
}

// Defines text editing by copying.
struct PlainText {
  std::string text;
  std::size_t start = 0;

  void Edit(std::size_t at, std::size_t length, const std::string& typed) {
    const std::size_t begin = CharacterOffset(text, at);
    const std::size_t end = begin + CharacterOffset(text.substr(begin), length);
    const std::string before = text.substr(0, begin) + typed;
    text = before + text.substr(end);
    start = CharacterCount(before);
  }
};

TEST_F(Forms, EditingKeepsTheCharacterCountOfEveryText) {
  struct Editor : FormRenderer {
    using FormRenderer::Edit;
    using FormRenderer::Select;
  };
  const std::string pieces[] = {"a", "ä", "€", "😀", "\x80", "\xA4\xC3", "\r\n", "", "xyz"};
  std::uint32_t random = 1;
  const auto below = [&random](std::size_t limit) {
    random = random * 1664525 + 1013904223;
    return (random >> 8U) % limit;
  };
  for (const std::string begin : {"", "\x80\x80", "\x80xyz", "äöü€😀"}) {
    PlainText plain{begin};
    form.txtLines.Text(begin);
    for (int turn = 0; turn < 3000; ++turn) {
      const std::string& typed = pieces[below(std::size(pieces))];
      const std::size_t length = below(4) == 0 ? below(5) : 0;
      const bool atCaret = below(2) == 0;
      const std::size_t at =
          atCaret ? form.txtLines.SelStart() : below(form.txtLines.TextLength() + 2);
      if (!atCaret && below(2) == 0) Editor::Select(form.txtLines, at, length);
      Editor::Edit(form.txtLines, at, length, typed);
      if (length > 0 || !typed.empty()) {
        plain.Edit(at, length, typed);
        ASSERT_EQ(form.txtLines.SelStart(), plain.start);
      }
      ASSERT_EQ(form.txtLines.Text(), plain.text) << begin << " turn " << turn;
      ASSERT_EQ(form.txtLines.TextLength(), CharacterCount(plain.text));
      if (plain.text.size() > 60) form.txtLines.Text(plain.text = begin);
    }
  }
}

TEST_F(Forms, EnteringByMouseKeepsTheCaretOfTheClick) {
  form.txtName.Text("abcd");
  user.ClickInto(form.txtName, 2);
  EXPECT_EQ(form.txtName.SelLength(), 0U);
  user.Type("X");
  EXPECT_EQ(form.txtName.Text(), "abXcd");
}

TEST_F(Forms, SelectAllTextKeepsAnExistingSelection) {
  form.txtName.Text("abcd");
  form.txtName.SelStart(1);
  form.txtName.SelLength(2);
  user.FocusByKeyboard(form.txtName);
  EXPECT_EQ(form.txtName.SelStart(), 1U);
  EXPECT_EQ(form.txtName.SelLength(), 2U);
}

TEST_F(Forms, SelectionsCountCharactersAndAreClampedToTheText) {
  form.txtName.Text("äöü€😀");
  form.txtName.SelStart(1);
  form.txtName.SelLength(100);
  EXPECT_EQ(form.txtName.SelLength(), 4U);
  user.FocusByKeyboard(form.txtName);
  user.Press(Key::del);
  EXPECT_EQ(form.txtName.Text(), "ä");
  user.Press(Key::backspace);
  user.Press(Key::backspace);
  EXPECT_EQ(form.txtName.Text(), "");
}

TEST_F(Forms, EditingKeepsTheRestOfATextUnchanged) {
  form.txtLines.Text("a\nb\r\nc");
  user.ClickInto(form.txtLines, 1);
  user.Type("X");
  EXPECT_EQ(form.txtLines.Text(), "aX\nb\r\nc");
}

TEST_F(Forms, EnterIsALineBreakOnlyInAMultiLineBox) {
  user.FocusByKeyboard(form.txtLines);
  user.Type("a\nb");
  EXPECT_EQ(form.txtLines.Text(), "a\r\nb");
  user.FocusByKeyboard(form.txtName);
  user.Type("a\n");
  EXPECT_EQ(form.txtName.Text(), "a");
  EXPECT_EQ(form.events.back(), "cmdOk_Click");
}

TEST_F(Forms, CursorKeysMoveTheCaret) {
  form.txtName.Text("abc");
  user.ClickInto(form.txtName, 1);
  user.Press(Key::right);
  user.Type("X");
  user.Press(Key::home);
  user.Type("Y");
  user.Press(Key::end);
  user.Type("Z");
  user.Press(Key::left);
  user.Press(Key::left);
  user.Press(Key::del);
  EXPECT_EQ(form.txtName.Text(), "YabXZ");
}

TEST_F(Forms, DisabledAndHiddenControlsRefuse) {
  form.txtName.Enabled(false);
  EXPECT_THROW(user.FocusByKeyboard(form.txtName), CannotDo);
  form.chkOn.Visible(false);
  EXPECT_THROW(user.Click(form.chkOn), CannotDo);
  EXPECT_FALSE(form.chkOn.Value());
  EXPECT_THROW(user.FocusByKeyboard(form.txtSecond), CannotDo);  // on the other tab
  user.SelectTab(form.tabs, 1);
  user.FocusByKeyboard(form.txtSecond);
  EXPECT_EQ(form.Focused(), &form.txtSecond);
}

TEST_F(Forms, ADisabledControlPassesOnTheFocus) {
  user.FocusByKeyboard(form.txtName);
  form.txtName.Enabled(false);
  EXPECT_EQ(form.Focused(), &form.txtLines);
  user.Type("x");
  EXPECT_EQ(form.txtName.Text(), "");
  EXPECT_EQ(form.txtLines.Text(), "x");
}

TEST_F(Forms, KeysTreatALineBreakAsOneCharacter) {
  form.txtLines.Text("a\r\nb");
  user.ClickInto(form.txtLines, 2);
  EXPECT_EQ(form.txtLines.SelStart(), 3U);
  user.Press(Key::left);
  EXPECT_EQ(form.txtLines.SelStart(), 1U);
  user.Press(Key::del);
  EXPECT_EQ(form.txtLines.Text(), "ab");
  user.Type("\n");
  user.Press(Key::backspace);
  EXPECT_EQ(form.txtLines.Text(), "ab");
}

TEST_F(Forms, TabFollowsTheOrderOfDeclaration) {
  std::vector<std::string_view> order;
  do {
    user.Press(Key::tab);
    order.push_back(form.Focused()->Name());
  } while (order.size() < 20 && (order.size() < 2 || order.back() != order.front()));
  const std::vector<std::string_view> expected = {"txtName",  "txtLines", "cboAny",    "cboKeyed",
                                                  "chkOn",    "optA",     "tabs",      "txtFirst",
                                                  "optInner", "cmdOk",    "cmdCancel", "txtName"};
  EXPECT_EQ(order, expected);
  user.Press(Key::shiftTab);
  EXPECT_EQ(form.Focused(), &form.cmdCancel);
}

TEST_F(Forms, TabSkipsDisabledControlsAndEntersAGroupAtItsChosenButton) {
  form.txtLines.Enabled(false);
  form.optB.Value(true);
  user.FocusByKeyboard(form.txtName);
  user.Press(Key::tab);
  EXPECT_EQ(form.Focused(), &form.cboAny);
  user.FocusByKeyboard(form.chkOn);
  user.Press(Key::tab);
  EXPECT_EQ(form.Focused(), &form.optB);
}

TEST_F(Forms, OptionButtonsExcludeEachOtherWithinTheirContainer) {
  user.Click(form.optA);
  user.Click(form.optInner);
  user.Click(form.optB);
  EXPECT_FALSE(form.optA.Value());
  EXPECT_TRUE(form.optB.Value());
  EXPECT_TRUE(form.optInner.Value());
  EXPECT_EQ(form.events, (Events{"optA", "optB"}));
  user.Press(Key::up);
  EXPECT_TRUE(form.optA.Value());
}

TEST_F(Forms, AClickOnTheChosenOptionIsAClick) {
  form.optB.Value(true);
  form.optB.Value(true);  // setting it by code is not a click
  EXPECT_EQ(form.events, (Events{"optB"}));
  user.Click(form.optB);
  user.Press(Key::space);
  EXPECT_EQ(form.events, (Events{"optB", "optB", "optB"}));
  EXPECT_TRUE(form.optB.Value());
}

TEST_F(Forms, AClickOnTheChosenRowIsAClick) {
  form.cboKeyed.AddItem("a", "Alpha");
  form.cboKeyed.AddItem("b", "Beta");
  form.cboKeyed.ListIndex(1);
  form.cboKeyed.ListIndex(1);  // setting it by code is not a click
  EXPECT_EQ(form.events, (Events{"cboKeyed_Change"}));
  form.events.clear();
  user.Choose(form.cboKeyed, 1);
  EXPECT_EQ(form.events, (Events{"cboKeyed_Click"}));
  user.Press(Key::down);  // there is no row below
  EXPECT_EQ(form.events, (Events{"cboKeyed_Click"}));
  user.Choose(form.cboKeyed, 0);
  EXPECT_EQ(form.events, (Events{"cboKeyed_Click", "cboKeyed_Change", "cboKeyed_Click"}));
}

TEST_F(Forms, CheckBoxesToggleByClickAndBySpace) {
  user.Click(form.chkOn);
  EXPECT_TRUE(form.chkOn.Value());
  user.Press(Key::space);
  EXPECT_FALSE(form.chkOn.Value());
  form.chkOn.Value(false);
  EXPECT_EQ(form.events, (Events{"chkOn_Click", "chkOn_Click"}));
}

TEST_F(Forms, AnEditableListDistinguishesTextFromChoice) {
  form.cboAny.AddItem("eins");
  form.cboAny.AddItem("zwei");
  user.Choose(form.cboAny, "zwei");
  EXPECT_EQ(form.cboAny.ListIndex(), 1);
  EXPECT_EQ(form.cboAny.Text(), "zwei");
  form.cboAny.Text("zwei");  // counts as typed text, although it equals the row
  EXPECT_EQ(form.cboAny.ListIndex(), kNoRow);
  EXPECT_EQ(form.events, (Events{"cboAny_Change", "cboAny_Change"}));
  user.FocusByKeyboard(form.cboAny);
  user.Type("x");
  EXPECT_EQ(form.cboAny.Text(), "x");
}

TEST_F(Forms, ADropDownListRefusesTypedText) {
  form.cboKeyed.AddItem("a", "Alpha");
  user.FocusByKeyboard(form.cboKeyed);
  EXPECT_THROW(user.Type("x"), CannotDo);
  EXPECT_EQ(form.cboKeyed.Text(), "");
  user.Press(Key::down);
  EXPECT_EQ(form.cboKeyed.SelectedItem()->key, "a");
}

TEST_F(Forms, KeysOfAListAreUniqueAndComparedExactly) {
  form.cboKeyed.AddItem("a", "Alpha");
  form.cboKeyed.AddItem("A", "ALPHA");
  EXPECT_EQ(ErrorOf([&] { form.cboKeyed.AddItem("a", "noch einmal"); }), 457);
  form.cboKeyed.ListIndex(form.cboKeyed.RowOf("A"));
  EXPECT_EQ(form.cboKeyed.ListIndex(), 1);
  EXPECT_EQ(form.cboKeyed.RowOf("b"), kNoRow);
  form.cboKeyed.ListIndex(kNoRow);
  EXPECT_EQ(form.cboKeyed.SelectedItem(), nullptr);
}

TEST_F(Forms, ClearingAListDropsTheChoice) {
  form.cboKeyed.AddItem("a", "Alpha");
  form.cboKeyed.Clear();
  EXPECT_TRUE(form.events.empty());  // nothing was chosen
  form.cboKeyed.AddItem("a", "Alpha");
  form.cboKeyed.ListIndex(0);
  form.cboKeyed.Clear();
  EXPECT_EQ(form.events, (Events{"cboKeyed_Change", "cboKeyed_Change"}));
  EXPECT_EQ(form.cboKeyed.Text(), "");
}

TEST_F(Forms, AStoppedTimerDoesNotTick) {
  EXPECT_THROW(user.Tick(form.timer), CannotDo);
  form.timer.Start(800);
  user.Tick(form.timer);
  user.Tick(form.timer);
  form.timer.Stop();
  EXPECT_THROW(user.Tick(form.timer), CannotDo);
  EXPECT_EQ(form.events, (Events{"tick", "tick"}));
}

TEST_F(Forms, EnterAndEscapeReachTheDialogsButtons) {
  user.FocusByKeyboard(form.txtName);
  user.Press(Key::enter);
  user.Press(Key::escape);
  EXPECT_EQ(form.events, (Events{"cmdOk_Click", "cmdCancel_Click"}));
}

TEST_F(Forms, AModalFormIsLoadedUntilItIsUnloaded) {
  platform.whileModal = [&](Form& shown) {
    EXPECT_EQ(&shown, &form);
    EXPECT_TRUE(form.IsLoaded());
    user.Click(form.cmdOk);
    EXPECT_FALSE(form.IsLoaded());
  };
  form.ShowModal();
  EXPECT_EQ(form.events, Events{"cmdOk_Click"});
}

TEST_F(Forms, ClosingAWindowUnloadsItsForm) {
  platform.whileModal = [&](Form&) {
    user.CloseWindow();
    EXPECT_FALSE(form.IsLoaded());
  };
  form.ShowModal();
  EXPECT_EQ(form.events, Events{});
}

TEST_F(Forms, MissingRowsCannotBeChosen) {
  constexpr int kInvalidCall = 5;
  form.cboKeyed.AddItem("a", "Eins");
  form.cboKeyed.Text("Eins");
  EXPECT_EQ(form.cboKeyed.ListIndex(), 0);
  EXPECT_EQ(ErrorOf([&] { form.cboKeyed.Text("Zwei"); }), kInvalidCall);
  EXPECT_EQ(ErrorOf([&] { form.cboKeyed.ListIndex(1); }), kInvalidCall);
  EXPECT_EQ(ErrorOf([&] { form.cboKeyed.ListIndex(kNoRow - 1); }), kInvalidCall);
  EXPECT_EQ(form.cboKeyed.ListIndex(), 0);
  EXPECT_EQ(ErrorOf([&] { form.tabs.SelectedTab(2); }), kInvalidCall);
  EXPECT_EQ(form.tabs.SelectedTab(), 0U);
}

TEST(CharacterCount, CountsCodePointsEvenInInvalidUtf8) {
  EXPECT_EQ(CharacterCount("aä€😀"), 4U);
  EXPECT_EQ(CharacterOffset("aä€😀", 2), 3U);
  EXPECT_EQ(CharacterOffset("aä", 9), 3U);
  EXPECT_EQ(CharacterCount("\x80\x80"), 0U);
  EXPECT_EQ(CharacterOffset("\x80\x80", 1), 2U);
}

}  // namespace
}  // namespace kvo
