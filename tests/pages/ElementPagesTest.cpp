#include "controls/DTCElement.h"
#include "pages/propElementProperties.h"
#include "pages/propGeneralAttributes.h"
#include "tests/pages/PageTest.h"

namespace kvo {
namespace {

class ElementPage : public PageTest<propElementProperties> {
 protected:
  void OpenOn(bool opening, bool closing, const std::string& content = "x") {
    Open({{"Value", "td"},
          {"OpeningTagOnly", opening},
          {"ClosingTagOnly", closing},
          {"HTMLContent", content}});
  }
};

TEST_F(ElementPage, MatchesItsDesign) {
  EXPECT_EQ(page.Caption(), "Allgemein");
  EXPECT_EQ(page.lblElementBasename.Caption(), "Name des HTML Elementes (TAG):");
  EXPECT_EQ(page.optSingleLineElement.Caption(), "Normal");
  EXPECT_EQ(page.optOpeningTagOnly.Caption(), "Nur öffnendes HTML Element erstellen");
  EXPECT_EQ(page.optClosingTagOnly.Caption(), "Nur schliessendes HTML Element erstellen");
  EXPECT_EQ(page.lblHTMLContent.Caption(), "HTML Inhalt:");
  EXPECT_EQ(page.txtHTMLContent.TextFont().family, "Courier New");
}

TEST_F(ElementPage, FillingDoesNotMarkThePageChanged) {
  OpenOn(false, false);
  EXPECT_FALSE(page.Changed());
  EXPECT_EQ(page.txtElementBasename.Text(), "td");
  EXPECT_TRUE(page.optSingleLineElement.Value());
  EXPECT_EQ(page.txtHTMLContent.Text(), "x");
  OpenOn(true, false);
  EXPECT_FALSE(page.Changed());
}

TEST_F(ElementPage, LoadingSwitchesTheContentBoxWithTheMode) {
  OpenOn(false, true);
  EXPECT_TRUE(page.optClosingTagOnly.Value());
  EXPECT_FALSE(page.txtHTMLContent.Enabled());
  EXPECT_FALSE(page.lblHTMLContent.Enabled());
  OpenOn(false, false);
  EXPECT_TRUE(page.txtHTMLContent.Enabled());
  EXPECT_TRUE(page.lblHTMLContent.Enabled());
}

TEST_F(ElementPage, BothFlagsAreLoadedAndStoredAsTheOpeningTag) {
  OpenOn(true, true);
  EXPECT_TRUE(page.optOpeningTagOnly.Value());
  page.Apply();
  EXPECT_EQ((*object)["OpeningTagOnly"], Variant(true));
  EXPECT_EQ((*object)["ClosingTagOnly"], Variant(false));
}

TEST_F(ElementPage, AClickOnAModeMarksThePageChangedAndSwitchesTheContentBox) {
  OpenOn(false, false);
  user.Click(page.optOpeningTagOnly);
  EXPECT_TRUE(page.Changed());
  EXPECT_FALSE(page.txtHTMLContent.Enabled());
  EXPECT_EQ(page.txtHTMLContent.Text(), "x");
  user.Click(page.optSingleLineElement);
  EXPECT_TRUE(page.txtHTMLContent.Enabled());
}

// Switches from every mode to every mode, including itself.
TEST_F(ElementPage, AClickOnEachOptionMarksThePageAndIsApplied) {
  struct Mode {
    OptionButton& option;
    bool opening;
    bool closing;
    std::string content;
  };
  const Mode modes[] = {{page.optSingleLineElement, false, false, "Inhalt"},
                        {page.optOpeningTagOnly, true, false, ""},
                        {page.optClosingTagOnly, false, true, ""}};
  for (const Mode& from : modes) {
    for (const Mode& to : modes) {
      SCOPED_TRACE(std::string(from.option.Name()) + " to " + std::string(to.option.Name()));
      OpenOn(from.opening, from.closing, "Inhalt");
      EXPECT_TRUE(from.option.Value());
      EXPECT_FALSE(page.Changed());
      user.Click(to.option);
      EXPECT_TRUE(page.Changed());
      for (const Mode& mode : modes) EXPECT_EQ(mode.option.Value(), &mode == &to);
      const bool whole = &to.option == &page.optSingleLineElement;
      EXPECT_EQ(page.txtHTMLContent.Enabled(), whole);
      EXPECT_EQ(page.lblHTMLContent.Enabled(), whole);
      page.Apply();
      EXPECT_FALSE(page.Changed());
      EXPECT_EQ((*object)["OpeningTagOnly"], Variant(to.opening));
      EXPECT_EQ((*object)["ClosingTagOnly"], Variant(to.closing));
      EXPECT_EQ((*object)["HTMLContent"], Variant(to.content));
    }
  }
}

TEST_F(ElementPage, TypingIntoEitherBoxMarksThePageChanged) {
  OpenOn(false, false);
  user.FocusByKeyboard(page.txtElementBasename);
  user.Type("t");
  EXPECT_TRUE(page.Changed());
  page.Apply();
  EXPECT_FALSE(page.Changed());
  user.FocusByKeyboard(page.txtHTMLContent);
  user.Type("t");
  EXPECT_TRUE(page.Changed());
}

TEST_F(ElementPage, EnteringABoxByKeyboardSelectsItsText) {
  OpenOn(false, false, "Inhalt");
  user.FocusByKeyboard(page.txtElementBasename);
  EXPECT_EQ(page.txtElementBasename.SelLength(), 2U);
  user.FocusByKeyboard(page.txtHTMLContent);
  EXPECT_EQ(page.txtHTMLContent.SelLength(), 6U);
}

TEST_F(ElementPage, AnOpeningTagKeepsNoContent) {
  const auto control = std::make_shared<DTCElement>();
  MemoryBag bag;
  control->ReadProperties(bag);
  control->basename("element");
  control->Value("td");
  control->HTMLContent("<b>x</b>");
  page.Select({control});
  user.Click(page.optOpeningTagOnly);
  page.Apply();
  EXPECT_EQ(control->HTMLContent(), "");
  EXPECT_EQ(control->GetRuntimeText(), R"(<kv:element name="td" render-open-tag-only="true"/>)");
}

TEST_F(ElementPage, AnEmptyTagNameIsAccepted) {
  OpenOn(false, false);
  user.FocusByKeyboard(page.txtElementBasename);
  user.Press(Key::del);
  page.Apply();
  EXPECT_EQ((*object)["Value"], Variant(""));
}

TEST_F(ElementPage, WritesInTheOrderOfThePage) {
  OpenOn(false, false);
  page.Apply();
  EXPECT_EQ(object->written,
            (std::vector<std::string>{"Value", "HTMLContent", "OpeningTagOnly", "ClosingTagOnly"}));
}

class AttributesPage : public PageTest<propGeneralAttributes> {
 protected:
  void OpenOn(const std::vector<std::string>& items) {
    const auto collection = std::make_shared<Collection>();
    for (const std::string& item : items) collection->Add(item);
    Open({{"AttributesCollection", ObjectRef(collection)}});
  }
  std::vector<std::string> Rows() const {
    std::vector<std::string> rows;
    for (const auto& row : page.suiAttributes.Items())
      rows.push_back(row->Caption() + "=" + ToText(row->Value()));
    return rows;
  }
  std::vector<std::string> Written() {
    std::vector<std::string> items;
    ForEach(*ToObject((*object)["AttributesCollection"]),
            [&](const Variant& item) { items.push_back(ToText(item)); });
    return items;
  }
  using Texts = std::vector<std::string>;
};

TEST_F(AttributesPage, MatchesItsDesign) {
  EXPECT_EQ(page.Caption(), "Attribute");
  EXPECT_EQ(page.suiAttributes.Caption(), "Attribute");
  EXPECT_EQ(page.cmdNew.Caption(), "Neu...");
  EXPECT_EQ(page.cmdDelete.Caption(), "Löschen");
}

TEST_F(AttributesPage, ListsNameAndValueAndCountsAsChanged) {
  OpenOn({"align|center", "width|"});
  EXPECT_EQ(Rows(), (Texts{"align=center", "width="}));
  EXPECT_TRUE(page.Changed());
}

TEST_F(AttributesPage, ApplyingAssignsANewCollection) {
  OpenOn({"align|center", "width|"});
  const ObjectRef before = ToObject((*object)["AttributesCollection"]);
  page.Apply();
  EXPECT_NE(ToObject((*object)["AttributesCollection"]), before);
  EXPECT_EQ(Written(), (Texts{"align|center", "width|"}));
}

TEST_F(AttributesPage, TheControlKeepsThatCollectionItself) {
  const auto control = std::make_shared<DTCElement>();
  control->Attributes("a|1||b|2");
  page.Select({control});
  page.Apply();
  EXPECT_EQ(control->Attributes(), "a|1||b|2");
  const ObjectRef held = control->AttributesCollection();
  const Variant more = "c|3";
  held->Call("Add", {&more, 1});
  EXPECT_EQ(control->Attributes(), "a|1||b|2||c|3");
}

TEST_F(AttributesPage, ANewAttributeIsLastAndHasAnEmptyValue) {
  OpenOn({"align|center"});
  page.Apply();
  platform.promptAnswers = {"width"};
  user.Click(page.cmdNew);
  EXPECT_EQ(platform.prompts, (std::vector<HeadlessPlatform::Prompt>{
                                  {"Bitte geben Sie einen Namen ein.", "Attribut hinzufügen..."}}));
  EXPECT_EQ(Rows(), (Texts{"align=center", "width="}));
  EXPECT_FALSE(page.Changed());  // adding does not mark the page
}

TEST_F(AttributesPage, AnEmptyAnswerOrCancelAddsNothing) {
  OpenOn({});
  platform.promptAnswers = {"", std::nullopt};
  user.Click(page.cmdNew);
  user.Click(page.cmdNew);
  EXPECT_TRUE(Rows().empty());
}

TEST_F(AttributesPage, TwoRowsWithTheSameNameAreBothStored) {
  OpenOn({"a|1"});
  platform.promptAnswers = {"a"};
  user.Click(page.cmdNew);
  user.SelectItem(*page.suiAttributes.Items()[1]);
  user.Type("2");
  page.Apply();
  EXPECT_EQ(Written(), (Texts{"a|1", "a|2"}));
}

TEST_F(AttributesPage, DeleteRemovesTheSelectedRowOnly) {
  OpenOn({"a|1", "a|2", "b|3"});
  user.Click(page.cmdDelete);  // nothing is selected
  EXPECT_EQ(Rows().size(), 3U);
  user.SelectItem(*page.suiAttributes.Items()[1]);
  user.Click(page.cmdDelete);
  EXPECT_EQ(Rows(), (Texts{"a=1", "b=3"}));
}

TEST_F(AttributesPage, ABarTypedIntoAValueBreaksTheNextLoad) {
  OpenOn({"a|"});
  user.SelectItem(*page.suiAttributes.Items()[0]);
  user.Type("x|y");
  page.Apply();
  EXPECT_EQ(Written(), Texts{"a|x|y"});
  page.Select({object});
  EXPECT_EQ(Rows(), Texts{"a=x"});
}

TEST_F(AttributesPage, NamesAreStoredAsTyped) {
  OpenOn({});
  platform.promptAnswers = {" data x ", " ", "a|b", "|"};
  for (int count = 0; count < 4; ++count) user.Click(page.cmdNew);
  EXPECT_EQ(Rows(), (Texts{" data x =", " =", "a|b=", "|="}));
  for (const auto& row : page.suiAttributes.Items()) {
    user.SelectItem(*row);
    user.Type("v w");
  }
  page.Apply();
  EXPECT_EQ(Written(), (Texts{" data x |v w", " |v w", "a|b|v w", "||v w"}));
  // On the next load, the first bar ends the name and the second ends the value.
  page.Select({object});
  EXPECT_EQ(Rows(), (Texts{" data x =v w", " =v w", "a=b", "="}));
  page.Apply();
  EXPECT_EQ(Written(), (Texts{" data x |v w", " |v w", "a|b", "|"}));
}

TEST_F(AttributesPage, ARowWithAnOddNameCanBeDeleted) {
  OpenOn({});
  platform.promptAnswers = {"a b", "a|b", "a b"};
  for (int count = 0; count < 3; ++count) user.Click(page.cmdNew);
  user.SelectItem(*page.suiAttributes.Items()[1]);
  user.Click(page.cmdDelete);
  user.SelectItem(*page.suiAttributes.Items()[1]);
  user.Type("2");
  page.Apply();
  EXPECT_EQ(Written(), (Texts{"a b|", "a b|2"}));
}

TEST_F(AttributesPage, ANameWithBlanksIsInTheRuntimeTextUnchanged) {
  const auto control = std::make_shared<DTCElement>();
  MemoryBag bag;
  control->ReadProperties(bag);
  control->Value("td");
  page.Select({control});
  platform.promptAnswers = {"data x"};
  user.Click(page.cmdNew);
  user.SelectItem(*page.suiAttributes.Items()[0]);
  user.Type("v");
  page.Apply();
  EXPECT_EQ(control->GetRuntimeText(), R"(<kv:print name="td" data x="v"/>)");
}

TEST_F(AttributesPage, ANewSelectionReplacesAllRows) {
  OpenOn({"a|1", "b|2"});
  OpenOn({"c|3"});
  EXPECT_EQ(Rows(), Texts{"c=3"});
}

TEST_F(AttributesPage, EmptyItemsAreSkippedAndAnItemWithoutABarIsAnError) {
  OpenOn({"", "a|1", ""});
  EXPECT_EQ(Rows(), Texts{"a=1"});
  EXPECT_EQ(ErrorOf([&] { OpenOn({"a"}); }), 9);
}

TEST_F(AttributesPage, AnEmptyValueIsStoredAndLeftOutOfTheRuntimeText) {
  const auto control = std::make_shared<DTCElement>();
  MemoryBag bag;
  control->ReadProperties(bag);
  control->Value("td");
  page.Select({control});
  platform.promptAnswers = {"width"};
  user.Click(page.cmdNew);
  page.Apply();
  EXPECT_EQ(control->Attributes(), "width|");
  EXPECT_EQ(control->GetRuntimeText(), R"(<kv:print name="td"/>)");
}

}  // namespace
}  // namespace kvo
