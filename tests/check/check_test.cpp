#include "host/check/Check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>

#include "common/Ascii.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo::check {
namespace {

// A shop with one contact field and one order field.
class FieldObject : public Object {
 public:
  explicit FieldObject(std::string name) : name_(std::move(name)) {}
  Variant Get(std::string_view member) override {
    if (EqualIgnoringCase(member, "SQLName")) return name_;
    return Object::Get(member);
  }

 private:
  std::string name_;
};
class ShopOffice : public Object {
 public:
  Variant Get(std::string_view member) override {
    const auto list = std::make_shared<Collection>();
    const bool contact = EqualIgnoringCase(member, "ContactFields");
    if (!contact && !EqualIgnoringCase(member, "OrderFields")) return Object::Get(member);
    list->Add(ObjectRef(std::make_shared<FieldObject>(contact ? "Email" : "OrderTotal")));
    return ObjectRef(list);
  }
};

page::Problems CheckText(const std::string& text, bool withOffice = true) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  return CheckPage(page::Page(text), withOffice ? std::make_shared<ShopOffice>() : nullptr);
}

bool Holds(const page::Problems& problems, std::string_view rule) {
  return std::ranges::find(problems, rule, &page::Problem::rule) != problems.end();
}

std::string Control(std::string_view className,
                    const std::vector<std::pair<std::string, std::string>>& params) {
  std::string text = "<object classid=\"progid:KVOPDesignObjects." + std::string(className) + "\">";
  for (const auto& [key, value] : params)
    text += "<param name=\"" + key + "\" value=\"" + value + "\">";
  return text + "</object>";
}

// A rule's section in docs/checks.md.
struct Section {
  std::string rule;
  std::vector<std::string> examples;  // what it complains about, what it does not
};

std::string Document() {
  std::ifstream file(KVO_SOURCE_DIR "/docs/checks.md", std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<Section> Sections() {
  std::vector<Section> sections;
  const std::string document = Document();
  for (std::size_t at = document.find("\n## "); at != std::string::npos;) {
    at += 4;
    const std::size_t next = document.find("\n## ", at);
    const std::string body = document.substr(at, next - at);
    Section section{body.substr(0, body.find('\n')), {}};
    constexpr std::string_view kFence = "```html\n";
    for (std::size_t begin = body.find(kFence); begin != std::string::npos;
         begin = body.find(kFence, begin)) {
      begin += kFence.size();
      section.examples.push_back(body.substr(begin, body.find("\n```", begin) - begin));
    }
    sections.push_back(std::move(section));
    at = next;
  }
  return sections;
}

class DocumentedRule : public testing::TestWithParam<Section> {};

TEST_P(DocumentedRule, ComplainsAboutItsFirstExampleAndNotAboutItsSecond) {
  const auto& [rule, examples] = GetParam();
  if (examples.empty()) {
    EXPECT_EQ(rule, page::rule::invalidBytes) << "a rule without examples";
    return;
  }
  ASSERT_EQ(examples.size(), 2U);
  EXPECT_TRUE(Holds(CheckText(examples[0]), rule)) << examples[0];
  const page::Problems problems = CheckText(examples[1]);
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
  }
}

TEST(UnknownFieldRule, SuggestsANearMiss) {
  const auto problems = CheckText(Control("DTCContact", {{"field", "Emial"}, {"format", ""}}));
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_NE(problems[0].message.german.find("Meinten Sie \"Email\"?"), std::string::npos)
      << problems[0].message.german;
  EXPECT_NE(problems[0].message.english.find("Did you mean \"Email\"?"), std::string::npos);
}
TEST(UnknownFieldRule, LooksIntoTests) {
  const auto block = [](const std::string& test) {
    return CheckText(Control("DTCIf", {{"test", test}, {"on-true", "x"}}));
  };
  EXPECT_TRUE(block("%#customer.Email#!=''%").empty());
  const auto problems = block("%#customer.Email#==#customer.Nix#%");
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_NE(problems[0].message.english.find("\"Nix\""), std::string::npos);
  EXPECT_TRUE(block("#customer.").empty());
}
TEST(UnknownFieldRule, IsSilentWithoutAnOffice) {
  EXPECT_TRUE(CheckText(Control("DTCOrder", {{"field", "X"}, {"format", ""}}), false).empty());
}
TEST(UnknownFieldRule, ComparesExactly) {
  EXPECT_TRUE(Holds(CheckText(Control("DTCOrder", {{"field", "ordertotal"}, {"format", ""}})),
                    "unknown-field"));
}

std::string Tag(const std::string& name, const std::string& key) {
  return Control("DTCElement", {{"value", name}, {key, "true"}}) + "\n";
}
std::string Opening(const std::string& name) { return Tag(name, "opening-tag-only"); }
std::string Closing(const std::string& name) { return Tag(name, "closing-tag-only"); }

TEST(UnbalancedElementRule, TakesNestedPairsOfSeveralNames) {
  EXPECT_TRUE(
      CheckText(Opening("table") + Opening("tr") + Closing("tr") + Closing("table")).empty());
  EXPECT_TRUE(CheckText(Opening("tr") + Opening("tr") + Closing("tr") + Closing("tr")).empty());
}
TEST(UnbalancedElementRule, NamesBothPlaces) {
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
TEST(UnbalancedElementRule, MindsTheOrder) {
  EXPECT_EQ(CheckText(Closing("tr") + Opening("tr")).size(), 2U);
}

TEST(AttributeRules, SeeABarShiftedByAnEmptyValue) {
  const auto problems =
      CheckText(Control("DTCElement", {{"value", "td"}, {"attributes", "a|||b|1"}}));
  EXPECT_TRUE(Holds(problems, "attribute-fails"));
  EXPECT_TRUE(Holds(problems, "attribute-changes"));
}
TEST(AttributeRules, SpeakEvenWhenTheElementHasNoNameYet) {
  EXPECT_TRUE(Holds(CheckText(Control("DTCElement", {{"value", ""}, {"attributes", "a"}})),
                    "attribute-fails"));
}
TEST(MarkerRule, LooksIntoBothBranches) {
  EXPECT_TRUE(Holds(CheckText(Control("DTCIf", {{"test", "t"}, {"on-false", "--kv:@gt;"}})),
                    "marker-in-content"));
  EXPECT_TRUE(Holds(
      CheckText(Control("DTCIf", {{"test", "t"}, {"on-true", "KVO BLOCKLEVEL ELEMENT ENDSPAN"}})),
      "marker-in-content"));
  EXPECT_FALSE(
      Holds(CheckText(Control("DTCScript", {{"html-content", "--kv:@gt;"}})), "marker-in-content"));
}
TEST(BareAmpersandRule, KnowsHeadlinesAndTrailingOnes) {
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
