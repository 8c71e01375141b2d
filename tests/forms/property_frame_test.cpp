#include "common/PropertyFrame.h"

#include <gtest/gtest.h>

#include "common/RuntimeError.h"
#include "host/headless/HeadlessUser.h"
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
  explicit TextPage(std::vector<std::string>& log) : PropertyPage("Text"), log_(log) {}
  ~TextPage() override { log_.push_back("Terminate"); }
  KVO_CONTROL(TextBox, txtText, .onChange = marksChangedUnlessLoading);

 private:
  void Initialize() override { log_.push_back("Initialize"); }
  void SelectionChanged() override {
    log_.push_back("SelectionChanged");
    const Loading loading(*this);
    txtText.Text(Read("Text"));
  }
  void ApplyChanges() override {
    log_.push_back("ApplyChanges");
    Write("Text", txtText.Text());
  }
  std::vector<std::string>& log_;
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
  PropertyFrame frame{
      window, "Probe", {subject}, {"first", "second"}, [this](std::string_view name) {
        return std::make_unique<TextPage>(name == "first" ? first : second);
      }};
};

TEST_F(Frames, APageIsFilledWhenItIsShownForTheFirstTime) {
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
  EXPECT_EQ(subject->writes, 0);  // the pages behind it wait
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

TEST_F(Frames, APageThatCannotBeFilledIsReportedAndNeverApplied) {
  const auto foreign = std::make_shared<Collection>();
  frame.Select({foreign});
  EXPECT_EQ(window.errors.size(), 1U);
  EXPECT_FALSE(frame.CanApply());
  Type(0, "x");
  EXPECT_FALSE(frame.CanApply());
  EXPECT_TRUE(frame.Apply());
  frame.Show(0);  // tried again
  EXPECT_EQ(window.errors.size(), 2U);
}

TEST_F(Frames, APageThatCouldNotBeFilledIsFilledAgainAtTheNextSelection) {
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

TEST_F(Frames, AnUnknownPageIsAnError) {
  const auto noPages = [](std::string_view) { return std::unique_ptr<PropertyPage>(); };
  EXPECT_EQ(ErrorOf([&] { PropertyFrame(window, "Probe", {subject}, {"fehlt"}, noPages); }), 429);
}

}  // namespace
}  // namespace kvo
