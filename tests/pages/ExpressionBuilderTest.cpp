#include "pages/frmExpressionBuilder.h"

#include "tests/pages/FakeOffice.h"
#include "tests/pages/PageTest.h"

namespace kvo {
namespace {

class ExpressionBuilder : public testing::Test {
 protected:
  ExpressionBuilder() {
    office->contactFields = {{"Email", "E-Mail", 0},    {"Age", "Alter", 1}, {"Blob", "Bild", 2},
                             {"News", "Newsletter", 3}, {"X4", "vier", 4},   {"X5", "fünf", 5},
                             {"Born", "Geburtstag", 6}, {"X7", "sieben", 7}};
  }
  void Init() {
    form.Office = office;
    form.Init();
  }
  std::vector<std::string> Texts(const ComboBox& box) const {
    std::vector<std::string> texts;
    for (const ComboBox::Row& row : box.Rows()) texts.push_back(row.text);
    return texts;
  }
  void Compare(std::string_view field, std::string_view comparison, std::string_view value) {
    user.Choose(form.cboFields, field);
    user.Choose(form.cboOperator, comparison);
    if (form.txtArgument.Enabled()) {
      user.FocusByKeyboard(form.txtArgument);
      user.Press(Key::selectAll);
      user.Press(Key::del);
      user.Type(value);
    }
    user.Click(form.cmdAdd);
  }
  using List = std::vector<std::string>;

  HeadlessPlatform platform;
  PlatformScope scope{platform};
  std::shared_ptr<FakeOffice> office = std::make_shared<FakeOffice>();
  frmExpressionBuilder form;
  HeadlessUser user{platform, form};
};

TEST_F(ExpressionBuilder, MatchesItsDesign) {
  EXPECT_EQ(form.Caption(), "Ausdruck-Assistent");
  EXPECT_EQ(form.lblLabel[0].Caption(), "Datenfeld:");
  EXPECT_EQ(form.lblLabel[1].Caption(), "Operator:");
  EXPECT_EQ(form.lblLabel[2].Caption(), "Wert:");
  EXPECT_EQ(form.Find("lblLabel", 2), &form.lblLabel[2]);
  EXPECT_EQ(form.cmdAdd.Caption(), "Hinzufügen");
  EXPECT_EQ(form.cmdAndOperator.Caption(), "UND");
  EXPECT_EQ(form.cmdOrOperator.Caption(), "ODER");
  EXPECT_EQ(form.cmdOk.Caption(), "Ok");
  EXPECT_EQ(form.cmdCancel.Caption(), "Abbrechen");
  EXPECT_EQ(form.Find("frmSeperator"), &form.frmSeperator);
}

TEST_F(ExpressionBuilder, ListsAllFieldsExceptTypesTwoFourAndFive) {
  Init();
  EXPECT_EQ(Texts(form.cboFields), (List{"E-Mail", "Alter", "Newsletter", "Geburtstag", "sieben"}));
  EXPECT_EQ(form.cboFields.SelectedItem()->key, "Email");
}

TEST_F(ExpressionBuilder, TheFirstFieldIsSelectedWithItsOperators) {
  Init();
  EXPECT_EQ(Texts(form.cboOperator), (List{"=", "<>"}));
  EXPECT_EQ(form.cboOperator.ListIndex(), 0);
}

TEST_F(ExpressionBuilder, WithoutAnOfficeOnlyTheFourOperatorsAreListed) {
  form.Init();
  EXPECT_TRUE(form.cboFields.Rows().empty());
  EXPECT_EQ(Texts(form.cboOperator), (List{"=", ">", "<", "<>"}));
}

TEST_F(ExpressionBuilder, OnlyUnlistedTypesGiveAnEmptyFieldList) {
  office->contactFields = {{"A", "A", 2}, {"B", "B", 4}, {"C", "C", 5}};
  Init();
  EXPECT_TRUE(form.cboFields.Rows().empty());
  EXPECT_EQ(Texts(form.cboOperator), (List{"=", ">", "<", "<>"}));
}

TEST_F(ExpressionBuilder, InitEmptiesTheListsFirst) {
  Init();
  Init();
  EXPECT_EQ(form.cboFields.Rows().size(), 5U);
  EXPECT_EQ(form.cboOperator.Rows().size(), 2U);
}

TEST_F(ExpressionBuilder, OffersTheOperatorsOfTheFieldsType) {
  Init();
  user.Choose(form.cboFields, "Alter");
  EXPECT_EQ(Texts(form.cboOperator), (List{"=", ">", "<", "<>"}));
  user.Choose(form.cboFields, "Newsletter");
  EXPECT_EQ(Texts(form.cboOperator), (List{"ist Wahr", "ist Falsch"}));
  user.Choose(form.cboFields, "Geburtstag");
  EXPECT_EQ(Texts(form.cboOperator), (List{"=", ">", "<", "<>"}));
}

TEST_F(ExpressionBuilder, ABooleanFieldDisablesTheValueBox) {
  Init();
  EXPECT_TRUE(form.txtArgument.Enabled());
  user.Choose(form.cboFields, "Newsletter");
  EXPECT_FALSE(form.txtArgument.Enabled());
  EXPECT_EQ(form.txtArgument.BackColor(), SystemColor::buttonFace);
  user.Choose(form.cboFields, "Alter");
  EXPECT_TRUE(form.txtArgument.Enabled());
  EXPECT_EQ(form.txtArgument.BackColor(), SystemColor::windowBackground);
}

TEST_F(ExpressionBuilder, WritesEveryOperatorOfEveryType) {
  struct Case {
    std::string_view field;
    std::string_view comparison;
    std::string_view expected;
  };
  const Case cases[] = {
      {"E-Mail", "=", "'#customer.Email#'=='v'"},
      {"E-Mail", "<>", "'#customer.Email#'!='v'"},
      {"Alter", "=", "#customer.Age#==v"},
      {"Alter", ">", "#customer.Age#&gt;v"},
      {"Alter", "<", "#customer.Age#&lt;v"},
      {"Alter", "<>", "#customer.Age#!=v"},
      {"Newsletter", "ist Wahr", "#customer.News#==true"},
      {"Newsletter", "ist Falsch", "#customer.News#==false"},
      {"Geburtstag", "=", "'#customer.Born#'=='v'"},
      {"Geburtstag", ">", "'#customer.Born#'&gt;'v'"},
      {"Geburtstag", "<", "'#customer.Born#'&lt;'v'"},
      {"Geburtstag", "<>", "'#customer.Born#'!='v'"},
  };
  Init();
  for (const Case& one : cases) {
    form.txtIfExpression.Text("");
    Compare(one.field, one.comparison, "v");
    EXPECT_EQ(form.txtIfExpression.Text(), one.expected);
  }
}

TEST_F(ExpressionBuilder, AWholeNumberIsWrittenAsTyped) {
  Init();
  for (const std::string value : {"17", "0", "-3", "007", "1000000000000", "1.000", "2,5"}) {
    form.txtIfExpression.Text("");
    Compare("Alter", "=", value);
    EXPECT_EQ(form.txtIfExpression.Text(), "#customer.Age#==" + value);
    form.txtIfExpression.Text("");
    Compare("Geburtstag", ">", value);
    EXPECT_EQ(form.txtIfExpression.Text(), "'#customer.Born#'&gt;'" + value + "'");
  }
}

// Fields whose data type is not a whole number until it is converted.
class LooseFields final : public Object {
 public:
  explicit LooseFields(const std::vector<Variant>& dataTypes) {
    for (const Variant& type : dataTypes) {
      const std::string name = "F" + std::to_string(fields_.Count());
      fields_.Add(ObjectRef(std::make_shared<PropertyObject>(PropertyObject::Properties{
          {"SQLName", name}, {"DisplayName", name}, {"DataType", type}})));
    }
  }
  Variant Item(const Variant& key) override {
    return fields_[static_cast<std::size_t>(std::stoi(ToText(key).substr(1)))];
  }
  std::unique_ptr<Enumerator> Enumerate() override { return fields_.Enumerate(); }

 private:
  Collection fields_;
};

TEST_F(ExpressionBuilder, DataTypesAreConvertedToWholeNumbers) {
  form.Office = std::make_shared<PropertyObject>(PropertyObject::Properties{
      {"ContactFields", ObjectRef(std::make_shared<LooseFields>(
                            std::vector<Variant>{"1", 3.0, " 6 ", 0.5, 2.5, "4", 5.0}))}});
  form.Init();
  EXPECT_EQ(Texts(form.cboFields), (List{"F0", "F1", "F2", "F3"}));
  const std::string_view expected[] = {"#customer.F0#==17", "#customer.F1#==true",
                                       "'#customer.F2#'=='17'", "'#customer.F3#'=='17'"};
  for (int field = 0; field < 4; ++field) {
    form.txtIfExpression.Text("");
    user.Choose(form.cboFields, field);
    const std::string comparison = form.cboOperator.Rows()[0].text;
    Compare("F" + std::to_string(field), comparison, "17");
    EXPECT_EQ(form.txtIfExpression.Text(), expected[field]);
  }
}

TEST_F(ExpressionBuilder, ABooleanFirstFieldSetsOperatorsAndValueBox) {
  office->contactFields = {{"News", "Newsletter", 3}, {"Age", "Alter", 1}};
  Init();
  EXPECT_EQ(form.cboFields.SelectedItem()->key, "News");
  EXPECT_EQ(Texts(form.cboOperator), (List{"ist Wahr", "ist Falsch"}));
  EXPECT_EQ(form.cboOperator.ListIndex(), 0);
  EXPECT_FALSE(form.txtArgument.Enabled());
  EXPECT_EQ(form.txtArgument.BackColor(), SystemColor::buttonFace);
  user.Click(form.cmdAdd);
  EXPECT_EQ(form.txtIfExpression.Text(), "#customer.News#==true");
  user.Choose(form.cboFields, "Alter");
  EXPECT_EQ(Texts(form.cboOperator), (List{"=", ">", "<", "<>"}));
  EXPECT_TRUE(form.txtArgument.Enabled());
}

TEST_F(ExpressionBuilder, AFirstFieldOfTypeNineIsListedAndAddsNothing) {
  office->contactFields = {{"X9", "neun", 9}, {"Email", "E-Mail", 0}};
  Init();
  EXPECT_EQ(Texts(form.cboFields), (List{"neun", "E-Mail"}));
  EXPECT_EQ(form.cboFields.SelectedItem()->key, "X9");
  EXPECT_EQ(Texts(form.cboOperator), List());
  EXPECT_EQ(form.cboOperator.SelectedItem(), nullptr);
  EXPECT_TRUE(form.txtArgument.Enabled());  // unchanged
  EXPECT_EQ(form.txtArgument.BackColor(), SystemColor::windowBackground);
  user.FocusByKeyboard(form.txtArgument);
  user.Type("17");
  user.Click(form.cmdAdd);
  EXPECT_EQ(form.txtIfExpression.Text(), "");
  user.Choose(form.cboFields, "E-Mail");
  EXPECT_EQ(Texts(form.cboOperator), (List{"=", "<>"}));
  user.Click(form.cmdAdd);
  EXPECT_EQ(form.txtIfExpression.Text(), "'#customer.Email#'=='17'");
}

// Opens it as its caller does: Office, Expression, Init.
TEST_F(ExpressionBuilder, ASecondOpeningStartsOver) {
  form.Expression("a==1");
  Init();
  user.Choose(form.cboFields, "Newsletter");
  user.Click(form.cmdAdd);
  platform.whileModal = [&](Form&) { user.Click(form.cmdCancel); };
  form.ShowModal();
  EXPECT_TRUE(form.CancelForm);
  EXPECT_EQ(form.Expression(), "a==1");

  form.Office = nullptr;
  office->contactFields = {{"Age", "Alter", 1}, {"Born", "Geburtstag", 6}};
  form.Expression("b==2");
  Init();
  EXPECT_EQ(form.txtIfExpression.Text(), "b==2");
  EXPECT_EQ(Texts(form.cboFields), (List{"Alter", "Geburtstag"}));
  EXPECT_EQ(form.cboFields.ListIndex(), 0);
  EXPECT_EQ(Texts(form.cboOperator), (List{"=", ">", "<", "<>"}));
  EXPECT_TRUE(form.txtArgument.Enabled());
  EXPECT_EQ(form.txtArgument.BackColor(), SystemColor::windowBackground);
  user.Click(form.cmdOrOperator);
  platform.whileModal = [&](Form&) { user.Click(form.cmdOk); };
  form.ShowModal();
  EXPECT_FALSE(form.CancelForm);
  EXPECT_EQ(form.Expression(), "b==2||");
}

TEST_F(ExpressionBuilder, ChainsComparisonsWithoutBlanks) {
  Init();
  Compare("E-Mail", "<>", "");
  user.Click(form.cmdAndOperator);
  Compare("Alter", ">", "17");
  EXPECT_EQ(form.txtIfExpression.Text(), "'#customer.Email#'!=''&amp;&amp;#customer.Age#&gt;17");
  user.Click(form.cmdOrOperator);
  EXPECT_TRUE(form.txtIfExpression.Text().ends_with("17||"));
}

TEST_F(ExpressionBuilder, TheValueIsTakenAsTyped) {
  Init();
  Compare("E-Mail", "=", "O'Neil");
  EXPECT_EQ(form.txtIfExpression.Text(), "'#customer.Email#'=='O'Neil'");
}

TEST_F(ExpressionBuilder, TextLeftInTheValueBoxIsIgnoredForABoolean) {
  Init();
  user.FocusByKeyboard(form.txtArgument);
  user.Type("rest");
  Compare("Newsletter", "ist Wahr", {});
  EXPECT_EQ(form.txtIfExpression.Text(), "#customer.News#==true");
}

TEST_F(ExpressionBuilder, AnUnknownTypeOffersNoOperatorAndAddsNothing) {
  Init();
  user.Choose(form.cboFields, "Newsletter");
  user.Choose(form.cboFields, "sieben");
  EXPECT_TRUE(form.cboOperator.Rows().empty());
  EXPECT_FALSE(form.txtArgument.Enabled());  // unchanged
  user.Click(form.cmdAdd);
  EXPECT_EQ(form.txtIfExpression.Text(), "");
}

TEST_F(ExpressionBuilder, AddingWithoutAFieldOrAnOfficeIsAnError) {
  form.Init();
  EXPECT_EQ(ErrorOf([&] { user.Click(form.cmdAdd); }), 91);
  Init();
  form.Office = nullptr;
  EXPECT_EQ(ErrorOf([&] { user.Click(form.cmdAdd); }), 91);
}

TEST_F(ExpressionBuilder, AddingAFieldThatTheHostNoLongerHasIsAnError) {
  Init();
  office->contactFields.clear();
  EXPECT_EQ(ErrorOf([&] { user.Click(form.cmdAdd); }), 5);
  EXPECT_EQ(form.txtIfExpression.Text(), "");
}

TEST_F(ExpressionBuilder, OkReturnsTheExpression) {
  form.Expression("a");
  platform.whileModal = [&](Form&) {
    user.FocusByKeyboard(form.txtIfExpression);
    user.Press(Key::end);
    user.Type("b");
    EXPECT_EQ(form.Expression(), "a");
    user.Click(form.cmdOk);
  };
  form.ShowModal();
  EXPECT_FALSE(form.CancelForm);
  EXPECT_EQ(form.Expression(), "ab");
}

TEST_F(ExpressionBuilder, CancelAndTheCloseButtonKeepTheCallersExpression) {
  for (const bool byWindow : {false, true}) {
    form.Expression("a");
    form.CancelForm = false;
    platform.whileModal = [&](Form&) {
      user.FocusByKeyboard(form.txtIfExpression);
      user.Type("verworfen");
      if (byWindow)
        user.CloseWindow();
      else
        user.Click(form.cmdCancel);
      EXPECT_FALSE(form.IsLoaded());
    };
    form.ShowModal();
    EXPECT_TRUE(form.CancelForm);
    EXPECT_EQ(form.Expression(), "a");
  }
}

}  // namespace
}  // namespace kvo
