#include "document/check/Check.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "document/check/Conditions.h"
#include "document/check/Fields.h"
#include "tests/check/CheckTesting.h"

namespace kvo::check {
namespace {

class DocumentedRule : public testing::TestWithParam<Section> {};

TEST_P(DocumentedRule, ReportsItsFirstExampleOnly) {
  const auto& [rule, examples] = GetParam();
  if (examples.empty()) {
    const std::set<std::string_view> without = {page::rule::invalidBytes, kProductsNotChecked.id,
                                                "mail-size"};
    EXPECT_TRUE(without.contains(rule)) << "a rule without examples";
    return;
  }
  ASSERT_EQ(examples.size(), 2U);
  const auto check = rule.starts_with("mail-") ? CheckAsMail : CheckText;
  EXPECT_TRUE(Holds(check(examples[0], true), rule)) << examples[0];
  const page::Problems problems = check(examples[1], true);
  for (const page::Problem& problem : problems)
    ADD_FAILURE() << page::Describe(problem, "example", Language::english);
}

std::string RuleName(const testing::TestParamInfo<Section>& section) {
  std::string name = section.param.rule;
  std::ranges::replace(name, '-', '_');
  return name;
}
INSTANTIATE_TEST_SUITE_P(Checks, DocumentedRule, testing::ValuesIn(Sections()), RuleName);

TEST(CheckRules, AreAllDocumentedWithTheirSeverity) {
  const std::string document = Document();
  for (const Rule& rule : Rules()) {
    const std::string id(rule.id);
    const std::string row = "| [" + id + "](#" + id + ") | " +
                            (rule.severity == page::Severity::error ? "error" : "warning") + " |";
    EXPECT_NE(document.find(row), std::string::npos) << row;
    EXPECT_NE(document.find("\n## " + id + "\n"), std::string::npos) << id;
    EXPECT_NE(rule.help.german, "");
    EXPECT_NE(rule.help.english, "");
  }
}

TEST(CheckRules, AreThoseOfTheDocument) {
  std::set<std::string> documented;
  for (const Section& section : Sections()) documented.insert(section.rule);
  std::set<std::string> rules;
  for (const Rule& rule : Rules()) rules.emplace(rule.id);
  EXPECT_EQ(rules, documented);
}

TEST(UnknownFieldRule, SuggestsANearMiss) {
  const auto problems = CheckText(Control("DTCContact", {{"field", "Emial"}, {"format", ""}}));
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_NE(problems[0].message.german.find("Meinten Sie \"Email\"?"), std::string::npos)
      << problems[0].message.german;
  EXPECT_NE(problems[0].message.english.find("Did you mean \"Email\"?"), std::string::npos);
}
TEST(UnknownFieldRule, ChecksConditions) {
  const auto block = [](const std::string& test) {
    return CheckText(Control("DTCIf", {{"test", test}, {"on-true", "x"}}));
  };
  EXPECT_TRUE(block("%#customer.Email#!=''%").empty());
  const auto problems = block("%#customer.Email#==#customer.Nix#%");
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_NE(problems[0].message.english.find("\"Nix\""), std::string::npos);
  EXPECT_TRUE(block("#customer.").empty());
}
TEST(UnknownFieldRule, ChecksEverythingThatAControlEmits) {
  const auto unknown = [](const std::string& className, const std::string& key,
                          const std::string& value) {
    return Holds(CheckText(Control(className, {{"value", "td"}, {key, value}})), "unknown-field");
  };
  EXPECT_TRUE(
      Holds(CheckText(Control("DTCPrint", {{"value", "#customer.Nix# + 1"}})), "unknown-field"));
  EXPECT_TRUE(unknown("DTCElement", "html-content", "Hallo #customer.Nix#"));
  EXPECT_TRUE(unknown("DTCElement", "html-content", "kv:@lt;kv:order field='Nix'/kv:@gt;"));
  EXPECT_FALSE(unknown("DTCElement", "html-content", "kv:@lt;kv:order field='OrderTotal'/kv:@gt;"));
  EXPECT_TRUE(unknown("DTCElement", "attributes", "title|#customer.Nix#"));
  EXPECT_FALSE(unknown("DTCElement", "attributes", "title|#customer.Email#"));
  for (const char* branch : {"on-true", "on-false"})
    EXPECT_TRUE(Holds(CheckText(Control("DTCIf", {{"test", "t"}, {branch, "#customer.Nix#"}})),
                      "unknown-field"))
        << branch;
  EXPECT_TRUE(Holds(CheckText(Control("DTCProductList", {{"header-caption", "#customer.Nix#"}})),
                    "unknown-field"));
}
TEST(UnknownFieldRule, ReportsAFieldOncePerControl) {
  const std::string twice =
      Control("DTCIf", {{"test", "#customer.Nix#==1"}, {"on-true", "#customer.Nix#"}});
  EXPECT_EQ(CheckText(twice + twice).size(), 2U);
}
TEST(UnknownOrderValueRule, WarnsAboutDoubtfulFields) {
  for (const std::string& page :
       {Control("DTCPrint", {{"value", "#order.Total#"}}), std::string("<p>#order.Total#")}) {
    const auto problems = CheckText(page);
    ASSERT_EQ(problems.size(), 1U);
    EXPECT_EQ(problems[0].rule, "unknown-order-value");
    EXPECT_EQ(problems[0].severity, page::Severity::warning);
    EXPECT_NE(problems[0].message.english.find("order field \"Total\""), std::string::npos);
  }
  EXPECT_TRUE(CheckText("<p>#order.OrderTotal#").empty());
}
TEST(UnknownOrderValueRule, ChecksTheOrderOfPositionLists) {
  EXPECT_TRUE(CheckText(Control("DTCPositionList", {})).empty());
  EXPECT_TRUE(CheckText(Control("DTCPositionList", {{"order-id", "#order.orderID#"}})).empty());
  EXPECT_TRUE(Holds(CheckText(Control("DTCPositionList", {{"order-id", "#order.orderidd#"}})),
                    "unknown-order-value"));
}
TEST(UnknownFieldRule, ChecksThePagesOwnTextAndReportsThePlace) {
  const auto problems = CheckText(
      "<title>#customer.Email#</title>\n<p title=\"ä #customer.Emial#\">\n" +
      Control("DTCPrint", {{"value", "x"}}) + " <!-- #order.Total# --><kv:contact\nfield='Mail'/>");
  ASSERT_EQ(problems.size(), 3U);
  EXPECT_EQ(problems[0].place, (page::Place{2, 13}));
  EXPECT_EQ(problems[0].control, "");
  EXPECT_EQ(problems[0].rule, "unknown-field");
  EXPECT_NE(problems[0].message.english.find("Did you mean \"Email\"?"), std::string::npos);
  EXPECT_NE(problems[1].message.english.find("order field \"Total\""), std::string::npos);
  EXPECT_EQ(problems[2].place.line, 3U);
  EXPECT_NE(problems[2].message.english.find("contact field \"Mail\""), std::string::npos);
}
TEST(UnknownFieldRule, IgnoresTextsThatAreNotFields) {
  for (const std::string text :
       {"<style>#customer.vip { color: #fff } #order.new #x {}</style>", "#customer.#",
        "#customer. Email#", "#customer.Nix", "#customers.Nix#", "#product.Nix#", "<kv:contact/>",
        "<kv:contact field=\"#customer.Email#\"/>", "<kv:contacts field='Nix'/>",
        "<kv:contact field='Nix'"})
    EXPECT_TRUE(CheckText(text).empty()) << text;
}
TEST(UnknownFieldRule, ComparesNamesInThePagesEncoding) {
  const std::string page =
      "<meta charset=iso-8859-1>#customer.Gr\xFC\xDF"
      "e#";
  const auto problems = CheckText(page);
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_NE(problems[0].message.english.find("\"Grüße\""), std::string::npos);
}
TEST(UnknownFieldRule, IsSilentForAnEmptyList) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  const page::Page page("#order.X##customer.X#" + Control("DTCOrder", {{"field", "X"}}));
  const auto problems =
      CheckPage(page, std::make_shared<ShopOffice>(Fields{.contact = {"Email"}, .order = {}}));
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_NE(problems[0].message.english.find("contact field \"X\""), std::string::npos);
}
TEST(UnknownFieldRule, ReportsAThousandPlacesAndThatThereAreMore) {
  std::string text;
  for (int i = 0; i < 1'200; ++i) text += "#customer.Nix#\n";
  const auto problems = CheckText(text);
  ASSERT_EQ(problems.size(), 1'001U);
  EXPECT_EQ(problems[999].place.line, 1'000U);
  EXPECT_EQ(problems[1'000].message.english,
            "Further unknown fields in the page's text are not named.");
}
TEST(UnknownFieldRule, IsSilentWithoutAnOffice) {
  EXPECT_TRUE(CheckText(Control("DTCOrder", {{"field", "X"}, {"format", ""}}), false).empty());
}
TEST(UnknownFieldRule, ComparesExactly) {
  EXPECT_TRUE(Holds(CheckText(Control("DTCOrder", {{"field", "ordertotal"}, {"format", ""}})),
                    "unknown-field"));
}

TEST(FieldNames, StopSuggestingAfterAHundredThousandComparisons) {
  std::vector<std::string> known;
  for (int i = 0; i < 10'000; ++i) known.push_back("Feld" + std::to_string(i));
  FieldNames names(known);
  EXPECT_TRUE(names.Know("Feld7"));
  EXPECT_FALSE(names.Know("feld7"));
  for (int i = 0; i < 10; ++i) {
    const std::string unknown = "Fled" + std::to_string(i);
    EXPECT_EQ(names.Nearest(unknown), "Feld" + std::to_string(i));
  }
  EXPECT_EQ(names.Nearest("Fled11"), "") << "compares at most a hundred thousand names";
  EXPECT_EQ(names.Nearest("Fled3"), "Feld3") << "cached";
}

TEST(OutputWithoutFieldRule, AppliesToContactsAndOrders) {
  for (const char* className : {"DTCContact", "DTCOrder"}) {
    const auto problems = CheckText(Control(className, {{"format", ""}}));
    ASSERT_EQ(problems.size(), 1U);
    EXPECT_EQ(problems[0].rule, "output-without-field");
    EXPECT_EQ(problems[0].severity, page::Severity::error);
  }
  EXPECT_FALSE(Holds(CheckText(Control("DTCPrint", {{"value", ""}})), "output-without-field"));
}

TEST(PrintTagRule, SuggestsTheMatchingTag) {
  const std::map<std::string, std::string> fitting = {{"DTCConfig", "config"},
                                                      {"DTCElement", "element"},
                                                      {"DTCProductList", "productlist"},
                                                      {"DTCPositionList", "positionlist"},
                                                      {"DTCClicktracker", "click"},
                                                      {"DTCViewtracker", "viewtracker"},
                                                      {"DTCUnsubscriber", "unsubscribe"},
                                                      {"DTCContact", "contact"},
                                                      {"DTCOrder", "order"},
                                                      {"DTCIf", "if"},
                                                      {"DTCScript", "script"},
                                                      {"DTCPrint", ""}};
  const auto warned = [](const std::string& className, const std::string& tag) -> std::string {
    // The keys that make the classes emit anything; another rule reports keys of other classes.
    std::string params;
    for (const std::string key : {"value", "item", "field", "test"})
      if (FindControlByName(className)->contract().FindKey(key) != nullptr)
        params += "<param name=\"" + key + "\" value=\"Email\">";
    for (const page::Problem& problem : CheckText("<object classid=\"progid:KVOPDesignObjects." +
                                                  className + "\">" + tag + params + "</object>"))
      if (problem.rule == "print-tag") {
        EXPECT_EQ(problem.severity, page::Severity::warning);
        return problem.message.english.substr(problem.message.english.rfind(" to ") + 4);
      }
    return "";
  };
  ASSERT_EQ(fitting.size(), RegisteredControls().size());
  for (const auto& [className, tag] : fitting) {
    const bool ownDefault =
        FindControlByName(className)->contract().FindKey("basename")->readDefault == tag;
    const std::string named = tag.empty() ? "" : '"' + tag + "\".";
    EXPECT_EQ(warned(className, ""), ownDefault ? "" : named) << className;
    EXPECT_EQ(warned(className, "<param name=\"basename\" value=\"print\">"), named) << className;
    EXPECT_EQ(warned(className, "<param name=\"basename\" value=\"other\">"), "") << className;
  }
}
TEST(PrintTagRule, IsSilentWhenNothingIsEmitted) {
  EXPECT_FALSE(
      Holds(CheckText(Control("DTCConfig", {{"basename", "print"}, {"item", ""}})), "print-tag"));
}

TEST(MissingJoinerRule, FindsAdjacentComparisons) {
  for (const std::string test :
       {"'#customer.A#'=='x''#customer.B#'=='y'", "#customer.A#==1#customer.B#&gt;2",
        "%#customer.A#==true#customer.B#==true%", "#customer.A#==1 #customer.B#==2",
        "#customer.A#&lt;=-1#customer.B#!=2", "(#customer.A#==1)(#customer.B#==2)",
        "(#customer.A#==1)#customer.B#==2", "a==1||b==2 c==3", "#customer.A#=='x'(a==b)"})
    EXPECT_NE(PlaceOfMissingJoiner(test), std::string::npos) << test;
}
TEST(MissingJoinerRule, LeavesEverythingElseToTheTemplateEngine) {
  for (const std::string test : {"",
                                 "%%",
                                 "%",
                                 "'",
                                 "#",
                                 "#customer.A#",
                                 "'#customer.A#'!=''",
                                 "'#customer.A#'!=''&amp;&amp;#customer.B#&gt;17",
                                 "'#customer.A#'=='x'||'#customer.B#'=='y'",
                                 "#customer.A#==1 && #customer.B#==2",
                                 "a == 1 and b == 2",
                                 "a == 1 AND NOT b == 2",
                                 "not #customer.A# == 1",
                                 "#customer.A# % 2 == 0",
                                 "round(#customer.A#) mod 2 == 0",
                                 "'O''Brien' == '#customer.A#'",
                                 "'#customer.A#'=='O'Brien'",
                                 "a == f(b) && c == g(d)",
                                 "#customer.A# == 1 ? 'x' : 'y'",
                                 "#customer.A#==-1",
                                 "a == b == c",
                                 "(a) && (b)",
                                 "#customer.A#==1,5",
                                 "#customer.A##customer.B#=='xy'",
                                 "'#customer.A#'=='a==b'"})
    EXPECT_EQ(PlaceOfMissingJoiner(test), std::string::npos) << test;
}
TEST(MissingJoinerRule, ReportsTheSecondCondition) {
  const auto problems = CheckText(
      Control("DTCIf", {{"test", "%#customer.Email#==1#order.OrderTotal#==2%"}, {"on-true", "x"}}));
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(problems[0].rule, "missing-joiner");
  EXPECT_NE(problems[0].message.english.find("\"#order.OrderTotal#==2%\""), std::string::npos);
}

// Tests with a shop's table that counts queries.
class ProductRules : public testing::Test {
 protected:
  ProductRules() {
    table.rows = {{{"ProductNo", "K-1"}}, {{"ProductNo", 7}}};
    platform_.recordsets = [this] { return std::make_shared<FakeRecordset>(table); };
  }
  page::Problems Check(const std::string& numbers) {
    return CheckPage(page::Page(Control("DTCProductList", {{"selected-products", numbers}})),
                     office, &products);
  }

  FakeTable table;
  ObjectRef office = AnOffice();
  ShopProducts products{office};

 private:
  HeadlessPlatform platform_;
  PlatformScope scope_{platform_};
};

TEST_F(ProductRules, ReportNumbersMissingFromTheShop) {
  EXPECT_TRUE(Check("K-1,7, k-1 ,").empty());
  const auto problems = Check("K-1,K-2,7,K-3,K-4,K-5,K-6,K-7,K-8");
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(problems[0].rule, "unknown-product");
  EXPECT_EQ(problems[0].severity, page::Severity::error);
  EXPECT_NE(
      problems[0].message.english.find("\"K-2\", \"K-3\", \"K-4\", \"K-5\", \"K-6\" and 2 more."),
      std::string::npos)
      << problems[0].message.english;
}
TEST_F(ProductRules, QueryEachNumberOnceAndManyTogether) {
  std::string numbers;
  for (int i = 0; i < 150; ++i) numbers += "P-" + std::to_string(i) + ",";
  Check(numbers + "P-0");
  ASSERT_EQ(table.opened.size(), 2U);
  Check(numbers);
  EXPECT_EQ(table.opened.size(), 2U);
  for (const FakeTable::Opened& opened : table.opened)
    EXPECT_EQ(opened.source.find("SELECT ProductNo FROM Products WHERE ProductNo IN ('P-"), 0U);
  EXPECT_EQ(table.opened[0].numbers[1], Variant(ado::kLockReadOnly));
}
TEST_F(ProductRules, PutNothingIntoAStatementThatCouldEndALiteral) {
  for (const std::string number :
       {"'; DELETE", "a'b", "a\\", "a&quot;b", ":name", "?", "Ä", "a\x01"})
    EXPECT_TRUE(Check(number).empty()) << number;
  EXPECT_TRUE(Check(std::string(101, '1')).empty());
  EXPECT_TRUE(table.opened.empty());
}
TEST_F(ProductRules, WarnOnceAboutAnUnreadableShop) {
  table.gone = true;
  const auto problems = Check("K-9");
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(problems[0].rule, "products-not-checked");
  EXPECT_EQ(problems[0].severity, page::Severity::warning);
  EXPECT_NE(problems[0].message.german.find("the database is gone"), std::string::npos);
  EXPECT_TRUE(Check("K-9").empty());
}
TEST_F(ProductRules, LimitTheQueriedNumbers) {
  std::string numbers;
  for (int i = 0; i < 20'500; ++i) numbers += std::to_string(i) + ",";
  const auto problems = Check(numbers);
  EXPECT_EQ(table.opened.size(), 200U);
  ASSERT_EQ(problems.size(), 2U);
  EXPECT_EQ(problems[0].rule, "products-not-checked");
}
TEST_F(ProductRules, AreSilentWithoutAShopOrACheck) {
  products = ShopProducts(nullptr);
  EXPECT_TRUE(Check("K-9").empty());
  EXPECT_TRUE(
      CheckPage(page::Page(Control("DTCProductList", {{"selected-products", "K-9"}})), office)
          .empty());
  EXPECT_TRUE(table.opened.empty());
}

TEST(QuoteInAttributeRule, AppliesToDoubleQuotes) {
  const auto warned = [](const std::string& attributes) {
    return Holds(CheckText(Control("DTCElement", {{"value", "td"}, {"attributes", attributes}})),
                 "quote-in-attribute");
  };
  EXPECT_TRUE(warned("a|1||style|x&quot;y"));
  EXPECT_TRUE(warned("a&quot;|1"));
  EXPECT_FALSE(warned("style|font-family:'Tahoma'"));
}

std::string Tag(const std::string& name, const std::string& key) {
  return Control("DTCElement", {{"value", name}, {key, "true"}}) + "\n";
}
std::string Opening(const std::string& name) { return Tag(name, "opening-tag-only"); }
std::string Closing(const std::string& name) { return Tag(name, "closing-tag-only"); }

TEST(UnbalancedElementRule, AcceptsNestedPairsOfSeveralNames) {
  EXPECT_TRUE(
      CheckText(Opening("table") + Opening("tr") + Closing("tr") + Closing("table")).empty());
  EXPECT_TRUE(CheckText(Opening("tr") + Opening("tr") + Closing("tr") + Closing("tr")).empty());
}
TEST(UnbalancedElementRule, ReportsBothPlaces) {
  const auto unclosed = CheckText(Opening("tr") + Opening("tr") + Closing("tr"));
  ASSERT_EQ(unclosed.size(), 1U);
  EXPECT_EQ(unclosed[0].place.line, 1U);
  EXPECT_NE(unclosed[0].message.english.find("at 3:1"), std::string::npos)
      << unclosed[0].message.english;
  const auto unopened = CheckText(Opening("tr") + Closing("tr") + Closing("tr"));
  ASSERT_EQ(unopened.size(), 1U);
  EXPECT_EQ(unopened[0].place.line, 3U);
  EXPECT_NE(unopened[0].message.english.find("(1:1)"), std::string::npos);
  EXPECT_NE(unopened[0].message.english.find("at 2:1"), std::string::npos);
}
TEST(UnbalancedElementRule, RespectsTheOrder) {
  EXPECT_EQ(CheckText(Closing("tr") + Opening("tr")).size(), 2U);
}

TEST(AttributeRules, FindABarShiftedByAnEmptyValue) {
  const auto problems =
      CheckText(Control("DTCElement", {{"value", "td"}, {"attributes", "a|||b|1"}}));
  EXPECT_TRUE(Holds(problems, "attribute-fails"));
  EXPECT_TRUE(Holds(problems, "attribute-changes"));
}
TEST(AttributeRules, ApplyEvenBeforeTheElementHasAName) {
  EXPECT_TRUE(Holds(CheckText(Control("DTCElement", {{"value", ""}, {"attributes", "a"}})),
                    "attribute-fails"));
}
TEST(MarkerRule, ChecksBothBranches) {
  EXPECT_TRUE(Holds(CheckText(Control("DTCIf", {{"test", "t"}, {"on-false", "--kv:@gt;"}})),
                    "marker-in-content"));
  EXPECT_TRUE(Holds(
      CheckText(Control("DTCIf", {{"test", "t"}, {"on-true", "KVO BLOCKLEVEL ELEMENT ENDSPAN"}})),
      "marker-in-content"));
  EXPECT_FALSE(
      Holds(CheckText(Control("DTCScript", {{"html-content", "--kv:@gt;"}})), "marker-in-content"));
}
TEST(BareAmpersandRule, FindsThemInHeadlinesAndAtTheEnd) {
  const auto headline = [](const std::string& text) {
    return Holds(CheckText(Control("DTCProductList", {{"header-caption", text}})),
                 "bare-ampersand");
  };
  EXPECT_TRUE(headline("a &amp; b"));
  EXPECT_FALSE(headline("a &amp;amp; b"));
  for (const std::string end : {"&amp;", "&amp;a", "&amp;am", "&amp;amp"})
    EXPECT_TRUE(Holds(CheckText(Control("DTCPrint", {{"value", "x" + end}, {"format", ""}})),
                      "bare-ampersand"))
        << end;
}

TEST(CheckPage, SortsFindingsOfAllRulesByPlace) {
  const auto problems =
      CheckText("<p>\n" + Control("DTCClicktracker", {}) + "\n" + Control("DTCPrnt", {}) + "\n" +
                Control("DTCContact", {{"field", "X"}}));
  ASSERT_EQ(problems.size(), 3U);
  EXPECT_EQ(problems[0].rule, "link-without-address");
  EXPECT_EQ(problems[1].rule, page::rule::unknownClass);
  EXPECT_EQ(problems[2].rule, "unknown-field");
}

}  // namespace
}  // namespace kvo::check
