// Expressions against a table of what they give.
#include "document/preview/Expression.h"

#include <gtest/gtest.h>

#include <map>

#include "document/preview/Record.h"

namespace kvo::preview {
namespace {

const std::map<std::string, Variant, std::less<>> kValues = {
    {"customer.Last Name", "Groß"},
    {"customer.Name", "Anna"},
    {"customer.Empty", ""},
    {"customer.Null", Variant()},
    {"customer.Age", 17},
    {"customer.Points", 1250},
    {"customer.Price", 9.5},
    {"customer.Text17", "17"},
    {"customer.German", "1.134,23"},
    {"customer.Point", "1134.23"},
    {"customer.Yes", true},
    {"customer.No", false},
    {"customer.YesText", "True"},
    {"customer.Born", "23.04.2004"},
    {"customer.Iso", "2004-04-23 16:09:53"},
    {"customer.Quote", "it's"},
    {"order.orderid", 4711},
    {"script.rabatt", "10"}};

Outcome LookUpValue(std::string_view group, std::string_view name) {
  const auto found = kValues.find(std::string(group) + '.' + std::string(name));
  if (found != kValues.end()) return {found->second, std::nullopt};
  return {{}, Message{"fehlt", "missing"}};
}

// "?" for what cannot be known.
std::string Shown(const Outcome& outcome) {
  if (outcome.unknown) return "?";
  if (const bool* const flag = outcome.value.If<bool>()) return *flag ? "true" : "false";
  return ToText(outcome.value);
}

struct Row {
  std::string_view expression;
  std::string_view result;
};

// What the expression builder writes: type, field, operator, value.
constexpr Row kTests[] = {
    // A text: equal or not.
    {"'#customer.Name#'=='Anna'", "true"},
    {"'#customer.Name#'=='anna'", "false"},
    {"'#customer.Name#'!='Anna'", "false"},
    {"'#customer.Name#'!=''", "true"},
    {"'#customer.Empty#'!=''", "false"},
    {"'#customer.Last Name#'=='Groß'", "true"},
    {"'#customer.First Name#'!=''", "?"},
    {"'#customer.Empty#'==''", "true"},
    {"'#customer.Null#'==''", "true"},
    {"'#customer.Quote#'=='it''", "?"},
    // A number.
    {"#customer.Age#==17", "true"},
    {"#customer.Age#==18", "false"},
    {"#customer.Age#&gt;17", "false"},
    {"#customer.Age#&gt;16.5", "true"},
    {"#customer.Age#&gt;16,5", "true"},
    {"#customer.Age#&lt;18", "true"},
    {"#customer.Age#&lt;17", "false"},
    {"#customer.Age#!=17", "false"},
    {"#customer.Age#!=-17", "true"},
    {"#customer.Text17#==17", "true"},
    {"#customer.German#&gt;1134", "true"},
    {"#customer.Point#&lt;1135", "true"},
    {"#customer.Name#&gt;17", "?"},
    {"#customer.Null#&gt;17", "?"},
    {"#customer.Age#&gt;", "?"},
    {"#customer.Age#&gt;viel", "?"},
    // A flag.
    {"#customer.Yes#==true", "true"},
    {"#customer.Yes#==false", "false"},
    {"#customer.No#==true", "false"},
    {"#customer.No#==false", "true"},
    {"#customer.YesText#==true", "true"},
    {"#customer.Name#==true", "?"},
    // An ordered value.
    {"'#customer.Born#'=='23.04.2004'", "true"},
    {"'#customer.Born#'&gt;'31.12.2003'", "true"},
    {"'#customer.Born#'&lt;'31.12.2003'", "false"},
    {"'#customer.Born#'!='24.04.2004'", "true"},
    {"'#customer.Iso#'&gt;'23.04.2004'", "true"},
    {"'#customer.Iso#'&lt;'24.04.2004'", "true"},
    {"'#customer.Name#'&gt;'Aachen'", "true"},
    {"'#customer.Name#'&gt;'23.04.2004'", "?"},
    // Joined.
    {"'#customer.Name#'!=''&amp;&amp;#customer.Age#&gt;16", "true"},
    {"'#customer.Name#'!=''&amp;&amp;#customer.Age#&gt;17", "false"},
    {"'#customer.Name#'==''||#customer.Age#&gt;16", "true"},
    {"'#customer.Name#'==''||#customer.Age#&gt;17", "false"},
    {"#customer.Yes#==true||#customer.No#==true&amp;&amp;#customer.No#==true", "true"},
    // The same by hand.
    {"#customer.Age# > 16 && #customer.Age# < 18", "true"},
    {"#customer.Age# >= 17 and #customer.Age# <= 17", "true"},
    {"#customer.Age# &gt;= 18 OR #customer.Age# &lt;= 16", "false"},
    {"not (#customer.Age# > 16)", "false"},
    {"!#customer.No#", "true"},
    {"(#customer.Yes# or #customer.No#) and #customer.No#", "false"},
    {"#customer.Yes# or #customer.No# and #customer.No#", "true"},
    {"((((#customer.Yes#))))", "true"},
    {"#customer.Age# <> 17", "false"},
    {"#customer.Age# = 17", "true"},
    {"#customer.Age# + 3 == 40 / 2", "true"},
    {"\"#customer.Name#\" == 'Anna'", "true"},
    {"true", "true"},
    {"false", "false"},
    {"1", "true"},
    {"0", "false"},
    {"#customer.Yes#", "true"},
    {"%#customer.Yes#==true%", "true"},
    // An unknown part matters only where it decides.
    {"#customer.Weg#==1", "?"},
    {"false and #customer.Weg#==1", "false"},
    {"#customer.Weg#==1 and false", "false"},
    {"true and #customer.Weg#==1", "?"},
    {"true or #customer.Weg#==1", "true"},
    {"#customer.Weg#==1 or true", "true"},
    {"false or #customer.Weg#==1", "?"},
    {"not #customer.Weg#", "?"},
    // No tests.
    {"", "?"},
    {"%%", "?"},
    {"'Anna'", "?"},
    {"17", "?"},
    {"#customer.Yes#==true#customer.No#==true", "?"},
    {"#customer.Yes# &&", "?"},
    {"(#customer.Yes#", "?"},
    {"#customer.Yes#)", "?"},
    {"contains(#customer.Name#, 'A')", "?"},
    {"'#customer.Name#", "?"},
};

// What print controls show.
constexpr Row kPrints[] = {
    {"#customer.Name#", "Anna"},
    {"%#customer.Name#%", "Anna"},
    {"#order.orderid#", "4711"},
    {"#rabatt# / 2", "5"},
    {"#weg#", "?"},
    {"#customer.Points# / 100", "12,5"},
    {"#customer.Points#*2-500", "2000"},
    {"2 + 3 * 4", "14"},
    {"(2 + 3) * 4", "20"},
    {"-#customer.Age#", "-17"},
    {"7 % 4", "3"},
    {"10 - 3 - 2", "5"},
    {"#customer.Price# * 1.19", "11,305"},
    {"#customer.Points# / 0", "?"},
    {"#customer.Name# * 2", "?"},
    {"#customer.Age# &gt; 16", "true"},
    {"#customer.Yes# ? 'ja' : 'nein'", "ja"},
    {"#customer.No# ? 'ja' : #customer.Yes# ? 'doch' : 'nein'", "doch"},
    {"#customer.Weg# ? 'ja' : 'nein'", "?"},
    {"Hallo #customer.Name#!", "?"},
    {"Hallo #customer.Name#", "Hallo Anna"},
    {"#customer.Name# #customer.Last Name#", "Anna Groß"},
    {"#customer.Name# #customer.Age#", "Anna 17"},
    {"'Hallo ' #customer.Name#", "?"},
    {"Hallo #customer.Weg#", "?"},
    {"Hallo", "Hallo"},
    {"007", "007"},
    {"'#fff4d6'", "#fff4d6"},
    {"upper(#customer.Name#)", "?"},
    {"#customer.Name", "?"},
    {"##", "?"},
};

TEST(ExpressionTest, TestsGiveWhatTheTableSays) {
  for (const auto& [expression, result] : kTests)
    EXPECT_EQ(Shown(preview::Test(expression, LookUpValue)), result) << expression;
}

TEST(ExpressionTest, PrintsGiveWhatTheTableSays) {
  for (const auto& [expression, result] : kPrints)
    EXPECT_EQ(Shown(Print(expression, LookUpValue)), result) << expression;
}

TEST(ExpressionTest, FillsReferencesOfATextAndComputesOneInPercentSigns) {
  EXPECT_EQ(Shown(Fill("a/#customer.Name#?b=#order.orderid#&c", LookUpValue)), "a/Anna?b=4711&c");
  EXPECT_EQ(Shown(Fill("#customer.Weg#", LookUpValue)), "?");
  EXPECT_EQ(Shown(Fill("#ff0000", LookUpValue)), "#ff0000");
  EXPECT_EQ(Shown(Fill("50%", LookUpValue)), "50%");
  EXPECT_EQ(Shown(Fill("%#customer.Yes# ? '#fff' : '#000'%", LookUpValue)), "#fff");
}

TEST(ExpressionTest, SaysWhyAValueIsUnknown) {
  EXPECT_EQ(preview::Test("#customer.Weg#==1", LookUpValue).unknown->german, "fehlt");
  EXPECT_EQ(preview::Test("f(1)", LookUpValue).unknown->german,
            "Den Ausdruck \"f(1)\" versteht die Vorschau nicht.");
  EXPECT_EQ(preview::Test("17", LookUpValue).unknown->german,
            "Die Bedingung \"17\" ist weder wahr noch falsch.");
  EXPECT_EQ(preview::Test("#customer.Name# > 3", LookUpValue).unknown->german,
            "\"Anna\" und \"3\" lassen sich nicht vergleichen.");
}

TEST(ExpressionTest, StopsAtDeepNesting) {
  const std::string deep(100'000, '(');
  EXPECT_EQ(Shown(preview::Test(deep + "true" + std::string(100'000, ')'), LookUpValue)), "?");
  EXPECT_EQ(Shown(preview::Test(std::string(100'000, '!') + "true", LookUpValue)), "true");
  EXPECT_EQ(Shown(Print(std::string(99'999, '-') + "1", LookUpValue)), "-1");
}

TEST(ExpressionTest, FormatsLikeTheSystem) {
  EXPECT_EQ(FormatValue(1134.23, "#,##0.00"), "1.134,23");
  EXPECT_EQ(FormatValue("1134.23", "#,##0.00"), "1.134,23");
  EXPECT_EQ(FormatValue("1.134", "#,##0"), "1.134");
  EXPECT_EQ(FormatValue("2004-04-23T16:09:53Z", "dd. mmmm yyyy u\\m hh:mm:ss"),
            "23. April 2004 um 16:09:53");
  EXPECT_EQ(FormatValue("23.04.2004", "dd.mm.yyyy"), "23.04.2004");
  EXPECT_EQ(FormatValue("bald", "dd.mm.yyyy"), "bald");
  EXPECT_EQ(FormatValue("keine", "#,##0"), "keine");
  EXPECT_EQ(FormatValue(true, ""), "true");
  EXPECT_EQ(FormatValue(Variant(), "#,##0"), "");
}

TEST(ExpressionTest, ReadsReferences) {
  EXPECT_EQ(ReferenceAt("#customer.Email# x")->name, "Email");
  EXPECT_EQ(ReferenceAt("#order.a.b#")->name, "a.b");
  EXPECT_EQ(ReferenceAt("#rabatt#")->group, kScript);
  EXPECT_EQ(ReferenceAt("#rabatt#")->name, "rabatt");
  for (const std::string_view none :
       {"", "#", "##", "#1#", "#customer.#", "#.Email#", "#customer.Email", "#cus tomer.Email#",
        "#customer. Email#", "#customer.Email #", "#a.b'c#", "#a..b#", "#fff"})
    EXPECT_FALSE(ReferenceAt(none)) << none;
}

}  // namespace
}  // namespace kvo::preview
