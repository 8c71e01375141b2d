#include "controls/DTCIf.h"
#include "pages/frmExpressionBuilder.h"
#include "pages/propIfGeneral.h"
#include "tests/pages/FakeOffice.h"
#include "tests/pages/PageTest.h"

namespace kvo {
namespace {

class IfPage : public PageTest<propIfGeneral> {
 protected:
  void OpenOn(const std::string& test) {
    Open({{"Test", test},
          {"OnTrue", "  ja "},
          {"OnFalse", "\r\n nein"},
          {"DisplayValue", "Name"},
          {"Office", ObjectRef(office)}});
  }
  std::shared_ptr<FakeOffice> office = std::make_shared<FakeOffice>();
};

TEST_F(IfPage, MatchesItsDesign) {
  EXPECT_EQ(page.Caption(), "Allgemein");
  EXPECT_EQ(page.lblTestCondition.Caption(), "Bedingung:");
  EXPECT_EQ(page.cmdShowExpressionBuilder.Caption(), "Ausdruck erstellen...");
  EXPECT_EQ(page.lblInfo.Caption(), "Name (optional):");
  EXPECT_EQ(page.sapOnTrue.Caption(), "Bedingung erfüllt");
  EXPECT_EQ(page.sapOnFalse.Caption(), "Bedingung nicht erfüllt");
  EXPECT_EQ(page.lblOnTrueContent.Caption(), "HTML-Code bei zutreffender Bedingung:");
  EXPECT_EQ(page.lblOnFalseContent.Caption(),
            "HTML-Code bei nicht zutreffender Bedingung: (optional):");
  EXPECT_EQ(page.txtOnTrueContent.TextFont().family, "Courier New");
  EXPECT_EQ(page.txtOnFalseContent.TextFont().family, "Courier New");
  EXPECT_EQ(page.sstOnContent.SelectedTab(), 0U);
}

TEST_F(IfPage, OnePercentSignAtEachEndIsRemovedAndRestored) {
  const std::pair<std::string, std::string> tests[] = {
      {"%a%", "a"}, {"a", "a"}, {"%a", "a"}, {"%", ""}, {"%%", ""}, {"%%a%%", "%a%"}, {"", ""}};
  for (const auto& [stored, shown] : tests) {
    SCOPED_TRACE(stored);
    OpenOn(stored);
    EXPECT_EQ(page.txtTestCondition.Text(), shown);
    page.Apply();
    EXPECT_EQ((*object)["Test"], Variant("%" + shown + "%"));
  }
}

TEST_F(IfPage, AnEmptyConditionIsEmittedAsTwoPercentSigns) {
  const auto control = std::make_shared<DTCIf>();
  MemoryBag bag;
  control->ReadProperties(bag);
  page.Select({control});
  page.Apply();
  EXPECT_EQ(control->Test(), "%%");
  EXPECT_NE(control->GetRuntimeText().find("test=\"%%\""), std::string::npos);
}

TEST_F(IfPage, BlanksAroundTheContentsAreTrimmedButNotLineBreaks) {
  OpenOn("a");
  EXPECT_EQ(page.txtOnTrueContent.Text(), "ja");
  EXPECT_EQ(page.txtOnFalseContent.Text(), "\r\n nein");
  EXPECT_EQ(page.txtInfo.Text(), "Name");
}

TEST_F(IfPage, EachBoxMarksThePageChanged) {
  for (TextBox* box :
       {&page.txtTestCondition, &page.txtInfo, &page.txtOnTrueContent, &page.txtOnFalseContent}) {
    OpenOn("a");
    page.Apply();
    EXPECT_FALSE(page.Changed());
    user.FocusByKeyboard(page.cmdShowExpressionBuilder);
    user.SelectTab(page.sstOnContent, box == &page.txtOnFalseContent ? 1 : 0);
    user.FocusByKeyboard(*box);
    EXPECT_EQ(box->SelLength(), CharacterCount(box->Text())) << box->Name();
    user.Type("x");
    EXPECT_EQ(box->Text(), "x");
    EXPECT_TRUE(page.Changed()) << box->Name();
  }
}

TEST_F(IfPage, FillingMarksThePageChanged) {
  OpenOn("a");
  EXPECT_TRUE(page.Changed());
}

TEST_F(IfPage, ApplyWritesAllFour) {
  OpenOn("a");
  page.Apply();
  EXPECT_EQ(object->written,
            (std::vector<std::string>{"Test", "OnTrue", "OnFalse", "DisplayValue"}));
  EXPECT_EQ((*object)["OnTrue"], Variant("ja"));
}

TEST_F(IfPage, OkInTheBuilderCopiesItsExpression) {
  OpenOn("a");
  page.Apply();
  platform.whileModal = [&](Form& form) {
    auto& builder = dynamic_cast<frmExpressionBuilder&>(form);
    EXPECT_EQ(builder.txtIfExpression.Text(), "a");
    EXPECT_EQ(builder.Office, office);
    HeadlessUser author(platform, builder);
    author.Click(builder.cmdAndOperator);
    author.Click(builder.cmdOk);
  };
  user.Click(page.cmdShowExpressionBuilder);
  EXPECT_EQ(page.txtTestCondition.Text(), "a&amp;&amp;");
  EXPECT_TRUE(page.Changed());
}

TEST_F(IfPage, CancellingTheBuilderKeepsTheCondition) {
  OpenOn("a");
  page.Apply();
  platform.whileModal = [&](Form& form) {
    auto& builder = dynamic_cast<frmExpressionBuilder&>(form);
    HeadlessUser author(platform, builder);
    author.FocusByKeyboard(builder.txtIfExpression);
    author.Type("verworfen");
    author.Press(Key::escape);
    EXPECT_FALSE(builder.IsLoaded());
  };
  user.Click(page.cmdShowExpressionBuilder);
  EXPECT_EQ(page.txtTestCondition.Text(), "a");
  EXPECT_FALSE(page.Changed());
}

TEST_F(IfPage, TheBuilderReopensWithThePagesCondition) {
  office->contactFields = {{"Age", "Alter", 1}, {"News", "Newsletter", 3}};
  OpenOn("%a%");
  const auto build = [&](const std::string& opensOn, std::string_view adds, bool ok) {
    platform.whileModal = [&](Form& form) {
      auto& builder = dynamic_cast<frmExpressionBuilder&>(form);
      HeadlessUser author(platform, builder);
      EXPECT_EQ(builder.txtIfExpression.Text(), opensOn);
      EXPECT_EQ(builder.cboFields.Rows().size(), 2U);
      EXPECT_EQ(builder.cboOperator.Rows().size(), 4U);
      EXPECT_EQ(builder.txtArgument.Text(), "");
      author.Choose(builder.cboFields, adds);
      author.Click(builder.cmdAdd);
      author.Click(ok ? builder.cmdOk : builder.cmdCancel);
    };
    user.Click(page.cmdShowExpressionBuilder);
  };
  build("a", "Newsletter", true);
  EXPECT_EQ(page.txtTestCondition.Text(), "a#customer.News#==true");
  build("a#customer.News#==true", "Alter", false);
  EXPECT_EQ(page.txtTestCondition.Text(), "a#customer.News#==true");
  user.FocusByKeyboard(page.txtTestCondition);
  user.Press(Key::selectAll);
  user.Type("b");
  build("b", "Alter", true);
  EXPECT_EQ(page.txtTestCondition.Text(), "b#customer.Age#==");
}

TEST_F(IfPage, TheBuilderWorksWithoutAnOffice) {
  Open(
      {{"Test", ""}, {"OnTrue", ""}, {"OnFalse", ""}, {"DisplayValue", ""}, {"Office", Variant()}});
  bool shown = false;
  platform.whileModal = [&](Form& form) {
    shown = dynamic_cast<frmExpressionBuilder&>(form).cboFields.Rows().empty();
  };
  user.Click(page.cmdShowExpressionBuilder);
  EXPECT_TRUE(shown);
}

}  // namespace
}  // namespace kvo
