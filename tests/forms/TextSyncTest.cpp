// Keeps a box in step with a text of the form.
#include "host/desktop/TextSync.h"

#include <gtest/gtest.h>

#include "host/script/HeadlessUser.h"

namespace kvo {
namespace {

int charactersShown = 0;

// Shows ASCII only.
std::u16string ShowCharacter(std::string_view character, Lines) {
  ++charactersShown;
  return {character.begin(), character.end()};
}
std::string TypedCharacters(std::u16string_view units, Lines) {
  std::string typed;
  for (const char16_t unit : units) typed += static_cast<char>(unit);
  return typed;
}
constexpr TextStyle kPlainStyle = {
    .show = ShowCharacter, .joinsCrLfInLine = false, .typed = TypedCharacters};

class Actions final : public FormActions {
 private:
  void CallForReport() override {}
};

// A toolkit's box; the test types into it.
class Box final : public TextSync {
 public:
  Box(EditedText& text, FormActions& actions) : TextSync(text, Lines::one, kPlainStyle, actions) {
    ShowText();
  }
  void Type(char16_t character) {
    units.replace(static_cast<std::size_t>(selection.start),
                  static_cast<std::size_t>(selection.length), 1, character);
    selection = {selection.start + 1, 0};
    Edited();
  }
  void Move(const UnitRange& to) {
    selection = to;
    Selected();
  }
  std::u16string units;
  UnitRange selection;
  int assigned = 0;

 private:
  std::u16string Units() const override { return units; }
  void ShowUnits(const std::u16string& shown) override {
    ++assigned;
    units = shown;
  }
  UnitRange Selection() const override { return selection; }
  void Select(const UnitRange& wanted) override { selection = wanted; }
};

class Page final : public Form {
 public:
  Page() : Form("Seite", {3000, 3000}) {}
  KVO_CONTROL(
      TextBox, txtName, .text = "abc", .onChange = [this](TextBox&) { onChange(); });
  KVO_CONTROL(PropertyGrid, suiRows, .at = {});
  std::function<void()> onChange = [] {};
};

// Notifies the boxes, as a desktop's renderer does.
class Renderer final : public FormRenderer {
 public:
  Renderer(Form& form, Actions& actions) : FormRenderer(form), actions_(actions) {}
  TextSync* box = nullptr;

 private:
  void ControlChanged(FormControl&, Aspect aspect) override {
    if (aspect == Aspect::text) actions_.Update([this] { box->ShowText(); });
    if (aspect == Aspect::selection) actions_.Update([this] { box->ShowSelection(); });
  }
  void ItemChanged(PropertyGridItem&) override {
    actions_.Update([this] { box->ShowText(); });
  }

  Actions& actions_;
};

class TextSyncs : public testing::Test {
 protected:
  TextSyncs() {
    actions.onFailure = [](const std::exception& failure) { FAIL() << failure.what(); };
  }
  HeadlessPlatform platform;
  PlatformScope scope{platform};
  Actions actions;
  Page page;
  Renderer renderer{page, actions};
};

TEST_F(TextSyncs, UpdateABoxOncePerKey) {
  BoxText text(page.txtName);
  Box box(text, actions);
  renderer.box = &box;
  box.Move({3, 0});
  charactersShown = 0;
  box.Type(u'd');
  EXPECT_EQ(page.txtName.Text(), "abcd");
  EXPECT_EQ(page.txtName.SelStart(), 4U);
  EXPECT_EQ(charactersShown, 4);  // each once
  EXPECT_EQ(box.assigned, 1);     // on construction
}

TEST_F(TextSyncs, UpdateABoxWithTheValueOfARowOncePerKey) {
  PropertyGridItem& row = page.suiRows.Add({.caption = "Zeile", .value = "abc"});
  ValueText value(&row);
  Box box(value, actions);
  renderer.box = &box;
  box.Move({0, 3});
  charactersShown = 0;
  box.Type(u'x');
  EXPECT_EQ(ToText(row.Value()), "x");
  EXPECT_EQ(charactersShown, 1);
  EXPECT_EQ(box.selection, (UnitRange{1, 0}));
}

TEST_F(TextSyncs, EmptyingAValueLeavesNothingSelected) {
  PropertyGridItem& row = page.suiRows.Add({.caption = "Zeile", .value = "abc"});
  ValueText value(&row);
  Box box(value, actions);
  renderer.box = &box;
  box.Move({0, 3});
  row.Value("");
  row.Value("neu");
  EXPECT_EQ(box.units, u"neu");
  EXPECT_EQ(box.selection, (UnitRange{0, 0}));
}

TEST_F(TextSyncs, RemoveFromTheBoxWhatTheFormRefuses) {
  BoxText text(page.txtName);
  Box box(text, actions);
  renderer.box = &box;
  box.Move({1, 0});
  box.Type(u'\n');
  EXPECT_EQ(page.txtName.Text(), "abc");
  EXPECT_EQ(box.units, u"abc");
  EXPECT_EQ(box.selection, (UnitRange{1, 0}));
}

TEST_F(TextSyncs, ShowThePagesReactionToAKey) {
  BoxText text(page.txtName);
  Box box(text, actions);
  renderer.box = &box;
  bool first = true;
  page.onChange = [&] {
    if (!std::exchange(first, false)) return;
    EXPECT_EQ(box.units, u"xabc");
    page.txtName.Text("anders");
  };
  box.Type(u'x');
  EXPECT_EQ(box.units, u"anders");
  EXPECT_EQ(box.selection, (UnitRange{0, 0}));
}

}  // namespace
}  // namespace kvo
