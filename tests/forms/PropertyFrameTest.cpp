#include "common/forms/PropertyFrame.h"

#include <gtest/gtest.h>

#include "common/forms/PageField.h"
#include "common/values/RuntimeError.h"
#include "host/script/HeadlessUser.h"
#include "tests/core/ErrorOf.h"

namespace kvo {
namespace {

class Subject final : public Object {
 public:
  Variant Get(std::string_view name) override {
    if (name == "Text") return text;
    return Object::Get(name);
  }
  void Let(std::string_view name, Variant value) override {
    if (name != "Text") return Object::Let(name, std::move(value));
    if (ToText(value) == "schlecht") throw RuntimeError(ErrorNumber::typeMismatch);
    text = ToText(value);
    ++writes;
  }
  std::string text;
  int writes = 0;
};

class TextPage final : public PropertyPage {
 public:
  explicit TextPage(std::vector<std::string>& log)
      : PropertyPage("Text", Filling::isNoChange), log_(log) {}
  ~TextPage() override { log_.push_back("Terminate"); }
  KVO_FIELD(TextBox, txtText, "Text");

 private:
  void Initialize() override { log_.push_back("Initialize"); }
  void SelectionChanged() override {
    log_.push_back("SelectionChanged");
    PropertyPage::SelectionChanged();
  }
  void ApplyChanges() override {
    log_.push_back("ApplyChanges");
    PropertyPage::ApplyChanges();
  }
  std::vector<std::string>& log_;
};

// Never marks itself as changed.
class QuietPage final : public PropertyPage {
 public:
  QuietPage() : PropertyPage("Still") {}
  KVO_CONTROL(TextBox, txtText, .at = {0, 0, 900, 300});
  KVO_CONTROL(ComboBox, cboList, .at = {0, 300, 900, 300});
  KVO_CONTROL(CheckBox, chkFlag, .at = {0, 600, 900, 300});
  KVO_CONTROL(OptionButton, optOne, .at = {0, 900, 900, 300});
  KVO_CONTROL(CommandButton, cmdAdd, .at = {0, 1200, 900, 300});
  KVO_CONTROL(PropertyGrid, suiRows, .at = {0, 1500, 900, 900});
  KVO_CONTROL(Grid, gdRows, .at = {0, 2400, 900, 900});
  KVO_CONTROL(Timer, timerIdle, .interval = 100);
  int applied = 0;

 private:
  void Initialize() override {
    cboList.AddItem("eins");
    suiRows.Add({.kind = ItemKind::text, .key = "text"});
    suiRows.Add({.kind = ItemKind::button, .key = "button"});
    suiRows.Add({.kind = ItemKind::list, .key = "list"}).AddChoice("a", "a");
    suiRows.Add({.kind = ItemKind::text, .key = "grey", .enabled = false});
  }
  void SelectionChanged() override { timerIdle.Start(100); }
  void ApplyChanges() override { ++applied; }
};

class RecordingWindow final : public PropertyFrame::Window {
 public:
  void ApplyEnabledChanged() override { ++applyChanges; }
  void ShowError(PropertyPage&, const std::exception& error) override {
    errors.emplace_back(error.what());
  }
  void Closed() override { ++closed; }
  int applyChanges = 0;
  int closed = 0;
  std::vector<std::string> errors;
};

class Frames : public testing::Test {
 protected:
  using Log = std::vector<std::string>;
  Frames() { frame.Show(0); }

  TextPage& Page(std::size_t tab) { return static_cast<TextPage&>(frame.Page(tab)); }
  void Type(std::size_t tab, std::string_view text) {
    HeadlessUser user(platform, Page(tab));
    user.FocusByKeyboard(Page(tab).txtText);
    user.Press(Key::selectAll);
    user.Type(text);
  }

  HeadlessPlatform platform;
  PlatformScope scope{platform};
  Log first;
  Log second;
  std::shared_ptr<Subject> subject = std::make_shared<Subject>();
  RecordingWindow window;
  PropertyFrame frame{window, {subject}, {"first", "second"}, [this](std::string_view name) {
                        return std::make_unique<TextPage>(name == "first" ? first : second);
                      }};
};

TEST_F(Frames, APageIsFilledWhenFirstShown) {
  EXPECT_EQ(first, (Log{"Initialize", "SelectionChanged"}));
  EXPECT_TRUE(second.empty());
  frame.Show(1);
  EXPECT_EQ(second, (Log{"Initialize", "SelectionChanged"}));
  frame.Show(0);
  EXPECT_EQ(first.size(), 2U);
}

TEST_F(Frames, ApplyIsEnabledByAChange) {
  EXPECT_FALSE(frame.CanApply());
  Type(0, "ab");
  EXPECT_TRUE(frame.CanApply());
  EXPECT_EQ(window.applyChanges, 1);
  EXPECT_TRUE(frame.Apply());
  EXPECT_FALSE(frame.CanApply());
  EXPECT_EQ(window.applyChanges, 2);
  EXPECT_TRUE(frame.IsOpen());
}

TEST_F(Frames, OnlyChangedPagesAreApplied) {
  frame.Show(1);
  Type(1, "neu");
  EXPECT_TRUE(frame.Ok());
  EXPECT_EQ(subject->text, "neu");
  EXPECT_EQ(first, (Log{"Initialize", "SelectionChanged"}));
  EXPECT_FALSE(frame.IsOpen());
  EXPECT_EQ(window.closed, 1);
}

TEST_F(Frames, CancelAppliesNothing) {
  Type(0, "neu");
  frame.Cancel();
  EXPECT_EQ(subject->writes, 0);
  EXPECT_FALSE(frame.IsOpen());
}

TEST_F(Frames, AFailingApplyKeepsThePageChangedAndTheFrameOpen) {
  frame.Show(1);
  Type(0, "schlecht");
  Type(1, "gut");
  EXPECT_FALSE(frame.Ok());
  EXPECT_EQ(window.errors, std::vector<std::string>{"Type mismatch"});
  EXPECT_TRUE(frame.IsOpen());
  EXPECT_TRUE(frame.CanApply());
  EXPECT_TRUE(Page(0).Changed());
  EXPECT_EQ(frame.ShownTab(), 0U);
  EXPECT_EQ(subject->writes, 0);  // later pages wait
  Type(0, "besser");
  EXPECT_TRUE(frame.Ok());
  EXPECT_EQ(subject->text, "gut");
}

TEST_F(Frames, ANewSelectionFillsThePagesThatWereShown) {
  Type(0, "verworfen");
  const auto other = std::make_shared<Subject>();
  other->text = "anderes";
  frame.Select({other});
  EXPECT_EQ(Page(0).txtText.Text(), "anderes");
  EXPECT_FALSE(frame.CanApply());
  EXPECT_TRUE(second.empty());
}

TEST_F(Frames, APageThatFailsToFillIsReportedAndNeverApplied) {
  const auto foreign = std::make_shared<Collection>();
  frame.Select({foreign});
  EXPECT_EQ(window.errors.size(), 1U);
  EXPECT_FALSE(frame.CanApply());
  Type(0, "x");
  EXPECT_FALSE(frame.CanApply());
  EXPECT_TRUE(frame.Apply());
  frame.Show(0);  // tries again
  EXPECT_EQ(window.errors.size(), 2U);
}

TEST_F(Frames, APageThatFailedToFillIsFilledAtTheNextSelection) {
  frame.Show(1);
  frame.Select({std::make_shared<Collection>()});
  EXPECT_EQ(window.errors.size(), 2U);
  const auto other = std::make_shared<Subject>();
  other->text = "anderes";
  frame.Select({other});
  EXPECT_EQ(window.errors.size(), 2U);
  for (const std::size_t tab : {0U, 1U}) {
    EXPECT_TRUE(frame.IsFilled(tab));
    EXPECT_EQ(Page(tab).txtText.Text(), "anderes");
  }
  Type(0, "getippt");
  EXPECT_TRUE(frame.CanApply());
  EXPECT_TRUE(frame.Ok());
  EXPECT_EQ(other->text, "getippt");
}

TEST_F(Frames, APageThatWasNeverShownIsNotFilledByASelection) {
  frame.Select({std::make_shared<Collection>()});
  frame.Select({subject});
  EXPECT_TRUE(second.empty());
  EXPECT_FALSE(frame.IsFilled(1));
}

// A user's actions on a page that does not mark itself.
class TouchedFrames : public testing::Test {
 protected:
  TouchedFrames() { frame.Show(0); }

  // Returns whether the page needs applying after the action; if so, applies it.
  bool Counts(const std::function<void(HeadlessUser&)>& act) {
    HeadlessUser user(platform, *page);
    act(user);
    const bool counts = frame.CanApply();
    const int before = page->applied;
    EXPECT_TRUE(frame.Apply());
    EXPECT_EQ(page->applied - before, counts ? 1 : 0);
    EXPECT_FALSE(frame.CanApply());
    return counts;
  }

  HeadlessPlatform platform;
  PlatformScope scope{platform};
  RecordingWindow window;
  QuietPage* page = nullptr;
  const PageFactory factory = [this](std::string_view) {
    auto made = std::make_unique<QuietPage>();
    page = made.get();
    return made;
  };
  const std::shared_ptr<Subject> subject = std::make_shared<Subject>();
  PropertyFrame frame{window, {subject}, {"x"}, factory, PropertyFrame::Applies::markedOrTouched};
};

TEST_F(TouchedFrames, TypingChoosingClickingAndDeletingRequireApplying) {
  EXPECT_TRUE(Counts([&](HeadlessUser& user) {
    user.ClickInto(page->txtText, 0);
    user.Type("a");
  }));
  EXPECT_TRUE(Counts([&](HeadlessUser& user) {
    user.FocusByKeyboard(page->txtText);
    user.Press(Key::del);
    user.Press(Key::backspace);
    user.Type("b");
  }));
  EXPECT_TRUE(Counts([&](HeadlessUser& user) { user.Choose(page->cboList, 0); }));
  EXPECT_TRUE(Counts([&](HeadlessUser& user) { user.Choose(page->cboList, 0); }));  // again
  EXPECT_TRUE(Counts([&](HeadlessUser& user) { user.Click(page->chkFlag); }));
  EXPECT_TRUE(Counts([&](HeadlessUser& user) { user.Click(page->optOne); }));
  EXPECT_TRUE(Counts([&](HeadlessUser& user) { user.Click(page->cmdAdd); }));
  PropertyGrid& rows = page->suiRows;
  EXPECT_TRUE(Counts([&](HeadlessUser& user) {
    user.SelectItem(rows.Item("text"));
    user.Type("c");
  }));
  EXPECT_TRUE(Counts([&](HeadlessUser& user) { user.ClickButton(rows.Item("button")); }));
  EXPECT_TRUE(Counts([&](HeadlessUser& user) { user.Choose(rows.Item("list"), "a"); }));
  EXPECT_TRUE(Counts([&](HeadlessUser& user) {
    user.SelectItem(rows.Item("list"));
    user.Press(Key::del);
  }));
}

TEST_F(TouchedFrames, LookingAtAPageTouchesNothing) {
  EXPECT_FALSE(Counts([&](HeadlessUser& user) {
    user.FocusByKeyboard(page->txtText);
    user.Press(Key::selectAll);
    user.Press(Key::right);
    user.Press(Key::tab);
    user.SelectItem(page->suiRows.Item("text"));
    user.Tick(page->timerIdle);
  }));
  EXPECT_FALSE(Counts([&](HeadlessUser&) {
    page->txtText.Text("from code");
    page->chkFlag.Value(!page->chkFlag.Value());
  }));
  EXPECT_EQ(window.applyChanges, 0);
}

TEST_F(TouchedFrames, ANewSelectionForgetsTheUsersActions) {
  HeadlessUser(platform, *page).Click(page->cmdAdd);
  EXPECT_TRUE(frame.CanApply());
  EXPECT_EQ(window.applyChanges, 1);
  frame.Select({std::make_shared<Subject>()});
  EXPECT_FALSE(frame.CanApply());
  EXPECT_EQ(window.applyChanges, 2);
  EXPECT_TRUE(frame.Ok());
  EXPECT_EQ(page->applied, 0);
}

TEST_F(TouchedFrames, AFrameThatTrustsThePagesMarkIgnoresTheUsersActions) {
  PropertyFrame marked(window, {subject}, {"x"}, factory);
  marked.Show(0);
  HeadlessUser(platform, *page).Click(page->cmdAdd);
  EXPECT_FALSE(marked.CanApply());
  EXPECT_TRUE(marked.Ok());
  EXPECT_EQ(page->applied, 0);
}

TEST_F(Frames, AnUnknownPageIsAnError) {
  const auto noPages = [](std::string_view) { return std::unique_ptr<PropertyPage>(); };
  EXPECT_EQ(ErrorOf([&] { PropertyFrame(window, {subject}, {"fehlt"}, noPages); }), 429);
}

}  // namespace
}  // namespace kvo
