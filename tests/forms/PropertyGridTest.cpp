#include <gtest/gtest.h>

#include "common/values/RuntimeError.h"
#include "host/script/HeadlessUser.h"
#include "tests/core/ErrorOf.h"

namespace kvo {
namespace {

class GridForm final : public Form {
 public:
  GridForm() : Form("Probe", {6000, 4000}) {
    grid.Add({.kind = ItemKind::category, .caption = "Allgemein"});
    grid.Add({.kind = ItemKind::text, .caption = "Text", .key = "text"});
    grid.Add({.kind = ItemKind::list, .caption = "Rahmen", .key = "border"});
    grid.Add({.kind = ItemKind::color, .caption = "Farbe", .key = "color"});
    grid.Add({.kind = ItemKind::list, .caption = "Fest", .key = "fixed", .editable = false});
    for (int i = 0; i < 3; ++i) grid.Item("border").AddChoice(std::to_string(i) + " Pixel", i);
  }
  std::vector<std::string> events;
  KVO_CONTROL(
      PropertyGrid, grid,
      .onChange = [this](PropertyGridItem& item) { events.push_back(item.Key()); },
      .onButtonClick = [this](PropertyGridItem& item) { events.push_back("!" + item.Key()); },
      .onDeleteKey = [this](PropertyGrid&) { events.push_back("delete"); });
};

class PropertyGrids : public testing::Test {
 protected:
  using Events = std::vector<std::string>;
  HeadlessPlatform platform;
  GridForm form;
  HeadlessUser user{platform, form};
};

TEST_F(PropertyGrids, ARowChosenFromItsListHoldsTheChoicesCaption) {
  user.Choose(form.grid.Item("border"), "2 Pixel");
  EXPECT_EQ(form.grid.Item("border").Value(), Variant("2 Pixel"));
  const PropertyGridItem* choice = GetSelectedChoice(form.grid.Item("border"));
  ASSERT_NE(choice, nullptr);
  EXPECT_EQ(choice->Value(), Variant(2));
  EXPECT_EQ(form.events, Events{"border"});
}

TEST_F(PropertyGrids, TypingReplacesTheValueAndThenAppends) {
  form.grid.Item("text").Value("alt");
  form.events.clear();
  user.SelectItem(form.grid.Item("text"));
  user.Type(std::string("neu\0\r", 5));  // a value is a single line
  EXPECT_EQ(form.grid.Item("text").Value(), Variant("neu"));
  EXPECT_EQ(form.events, (Events{"text", "text", "text"}));
  user.SelectItem(form.grid.Item("text"));
  user.Press(Key::selectAll);
  user.Type("n");
  EXPECT_EQ(form.grid.Item("text").Value(), Variant("n"));
  user.Press(Key::selectAll);
  user.Type("n");  // typing the same value is not a change
  EXPECT_EQ(form.events.size(), 4U);
}

TEST_F(PropertyGrids, TypingAfterANumberMakesItAText) {
  form.grid.Item("border").Value(2);
  user.SelectItem(form.grid.Item("border"));
  user.Press(Key::selectAll);
  user.Press(Key::backspace);
  form.grid.Item("border").Value(2);
  user.Press(Key::end);
  user.Type("px");
  EXPECT_EQ(form.grid.Item("border").Value(), Variant("2px"));
}

// Would take minutes if each key copied the value.
TEST_F(PropertyGrids, TypingALongValueTakesNoLongerPerKey) {
  const std::string typed(300'000, 'x');
  user.SelectItem(form.grid.Item("text"));
  user.Type(typed);
  EXPECT_EQ(form.grid.Item("text").Value(), Variant(typed));
  EXPECT_EQ(form.events.size(), typed.size());
}

TEST_F(PropertyGrids, TypedTextSelectsNoChoiceUnlessItIsACaption) {
  form.grid.Item("border").Value("2");
  EXPECT_EQ(GetSelectedChoice(form.grid.Item("border")), nullptr);
  form.grid.Item("border").Value("1 Pixel");
  EXPECT_NE(GetSelectedChoice(form.grid.Item("border")), nullptr);
}

TEST_F(PropertyGrids, AChoiceIsFoundByTheTextOfItsValue) {
  const PropertyGridItem& row = form.grid.Item("border");
  ASSERT_NE(FindChoiceByValue(row, "2"), nullptr);
  EXPECT_EQ(FindChoiceByValue(row, "2")->Caption(), "2 Pixel");
  EXPECT_EQ(FindChoiceByValue(row, "3"), nullptr);
  EXPECT_EQ(FindChoiceByValue(row, "2 Pixel"), nullptr);
}

TEST_F(PropertyGrids, TheFirstOfSeveralMatchingChoicesIsFound) {
  PropertyGridItem& row = form.grid.Item("fixed");
  row.AddChoice("gleich", "1");
  row.AddChoice("gleich", "1");
  row.Value("gleich");
  EXPECT_EQ(GetSelectedChoice(row), row.Choices()[0].get());
  EXPECT_EQ(FindChoiceByValue(row, "1"), row.Choices()[0].get());
}

TEST_F(PropertyGrids, AssigningAValueRaisesTheEventOnlyForANewValue) {
  form.grid.Item("text").Value("a");
  form.grid.Item("text").Value("a");
  EXPECT_EQ(form.events, Events{"text"});
}

TEST_F(PropertyGrids, TheFirstKeyInARowReplacesItsValue) {
  form.grid.Item("text").Value("alt");
  user.SelectItem(form.grid.Item("text"));
  user.Type("ne");
  user.Press(Key::backspace);
  user.Type("u");
  EXPECT_EQ(form.grid.Item("text").Value(), Variant("nu"));
}

TEST_F(PropertyGrids, AListThatIsNotEditableRefusesTypedText) {
  user.SelectItem(form.grid.Item("fixed"));
  EXPECT_THROW(user.Type("x"), CannotDo);
}

TEST_F(PropertyGrids, DisabledRowsRefuse) {
  form.grid.Item("color").Enabled(false);
  EXPECT_THROW(user.ClickButton(form.grid.Item("color")), CannotDo);
  EXPECT_THROW(user.Type("x"), CannotDo);
  EXPECT_TRUE(form.events.empty());
}

TEST_F(PropertyGrids, OnlyColourRowsAndButtonRowsHaveAButton) {
  user.ClickButton(form.grid.Item("color"));
  EXPECT_EQ(form.events, Events{"!color"});
  EXPECT_THROW(user.ClickButton(form.grid.Item("text")), CannotDo);
}

TEST_F(PropertyGrids, RemovingTheSelectedRowSelectsNothing) {
  form.grid.Add({.kind = ItemKind::entry, .caption = "Eintrag", .key = "entry"});
  user.SelectItem(form.grid.Item("entry"));
  user.Press(Key::del);
  EXPECT_EQ(form.events, Events{"delete"});
  form.grid.Remove(*form.grid.SelectedItem());
  EXPECT_EQ(form.grid.SelectedItem(), nullptr);
  EXPECT_EQ(form.grid.Find("entry"), nullptr);
}

TEST_F(PropertyGrids, KeysEditTheSelectedValue) {
  PropertyGridItem& row = form.grid.Item("text");
  row.Value("abcd");
  user.SelectItem(row);
  user.Press(Key::left);
  user.Press(Key::del);  // deletes a character, not the row
  EXPECT_EQ(ToText(row.Value()), "bcd");
  user.Press(Key::end);
  user.Press(Key::left);
  user.Type("xy");
  EXPECT_EQ(ToText(row.Value()), "bcxyd");
  user.Press(Key::backspace);
  EXPECT_EQ(ToText(row.Value()), "bcxd");
  user.Press(Key::selectAll);
  user.Type("z");
  EXPECT_EQ(ToText(row.Value()), "z");
}

TEST_F(PropertyGrids, ArrowKeysMoveThroughRowsAndChoices) {
  user.FocusByKeyboard(form.grid);
  user.Press(Key::up);
  EXPECT_EQ(form.grid.SelectedItem(), &form.grid.Item("fixed"));
  user.SelectItem(*form.grid.Items()[0]);
  user.Press(Key::down);
  EXPECT_EQ(form.grid.SelectedItem(), &form.grid.Item("text"));
  user.Press(Key::down);
  user.Press(Key::down);
  user.Press(Key::down);
  EXPECT_EQ(form.grid.SelectedItem(), &form.grid.Item("border"));
  EXPECT_EQ(form.grid.Item("border").Value(), Variant("1 Pixel"));
}

TEST_F(PropertyGrids, TheTabKeyStopsAtTheButtonNextToAColour) {
  user.SelectItem(form.grid.Item("color"));
  user.Press(Key::tab);
  EXPECT_EQ(form.Focused(), &form.grid);
  EXPECT_THROW(user.Type("x"), CannotDo);
  user.Press(Key::enter);
  EXPECT_EQ(form.events, Events{"!color"});
  user.Type("x");
  EXPECT_EQ(ToText(form.grid.Item("color").Value()), "x");
}

TEST_F(PropertyGrids, AnUnknownKeyIsAnError) {
  EXPECT_EQ(ErrorOf([&] { form.grid.Item("fehlt"); }), 5);
}

}  // namespace
}  // namespace kvo
