// The report formats of kvo check, its fixes, and its lists of known problems.
#include <algorithm>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "document/check/Check.h"
#include "tests/kvo/Program.h"
#include "tests/support/Schema.h"

namespace kvo::test::reports {
namespace {

const std::string kOffice =
    R"({"contactFields": [{"sqlName": "Email", "displayName": "E-Mail", "dataType": 0}]})";
const std::string kContact = ControlElement("DTCContact", {{"format", ""}}, "A,b:c%");
// A field and a key that can be mended, and a contact without a field that cannot.
const std::string kPage = "<p>\xC3\xA4 #customer.Emial#\r\n" + kContact + "\r\n" +
                          ControlElement("DTCPrint", {{"vaule", "x"}}) + "\r\n";
const std::string kMendedPage = "<p>\xC3\xA4 #customer.Email#\r\n" + kContact + "\r\n" +
                                ControlElement("DTCPrint", {{"value", "x"}}) + "\r\n";

class Reports : public Program {
 protected:
  Reports() {
    Write("office.json", kOffice);
    Write("a b.html", kPage);
  }
};
using Fixing = Reports;
using KnownProblems = Reports;

std::string TextAt(const std::string& page, const Json& region) {
  return page.substr(region["byteOffset"], region["byteLength"]);
}

TEST_F(Reports, InSarifFollowItsSchema) {
  const Result result = Kvo({"check", "a b.html", "--format", "sarif"});
  EXPECT_EQ(result.code, 1);
  const Json document = Json::parse(result.out);
  std::ifstream file(KVO_SOURCE_DIR "/tests/kvo/sarif.schema.json");
  const Schema schema(Json::parse(file));
  EXPECT_TRUE(schema.Accepts(document)) << result.out;

  const Json& run = document["runs"][0];
  const Json& rules = run["tool"]["driver"]["rules"];
  ASSERT_EQ(rules.size(), check::Rules().size());
  const Json& results = run["results"];
  ASSERT_EQ(results.size(), 3U);
  for (const Json& each : results) {
    EXPECT_EQ(rules[each["ruleIndex"].get<std::size_t>()]["id"], each["ruleId"]);
    EXPECT_EQ(each["locations"][0]["physicalLocation"]["artifactLocation"]["uri"], "a%20b.html");
  }
  const Json& region = results[0]["locations"][0]["physicalLocation"]["region"];
  EXPECT_EQ(TextAt(kPage, region), "#customer.Emial#");
  EXPECT_EQ(region["startColumn"], 6);
  EXPECT_EQ(region["endColumn"], 22);
  EXPECT_EQ(region["charOffset"], 5);
  EXPECT_EQ(region["charLength"], 16);
  EXPECT_EQ(results[1]["locations"][0]["logicalLocations"][0]["name"], "A,b:c%");
  EXPECT_FALSE(results[1].contains("fixes"));
  const Json& change = results[0]["fixes"][0]["artifactChanges"][0]["replacements"][0];
  EXPECT_EQ(change["deletedRegion"]["charOffset"], 15);
  EXPECT_EQ(change["deletedRegion"]["charLength"], 5);
  EXPECT_EQ(change["insertedContent"]["text"], "Email");

  Json broken = document;
  broken["runs"][0]["results"][0].erase("message");
  EXPECT_FALSE(schema.Accepts(broken)) << "the schema demands something";
  broken = document;
  broken["runs"][0]["results"][0]["level"] = "fatal";
  EXPECT_FALSE(schema.Accepts(broken));
}

TEST_F(Reports, AsCommandsOfABuildServerEscapeTheirValues) {
  Write("x,y.html", "\r\n" + ControlElement("DTCPrint", {{"val%", "x"}}, "i:d"));
  const Result result = Kvo({"check", "a b.html", "x,y.html", "--format", "github"});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out.find("::error file=a b.html,line=1,endLine=1,col=6,endColumn=22,title="
                            "unknown-field::There is no contact field \"Emial\"."),
            0U)
      << result.out;
  EXPECT_NE(result.out.find("\n::error file=a b.html,line=2,endLine=2,col=1,endColumn="),
            std::string::npos);
  EXPECT_NE(result.out.find("::DTCContact \"A,b:c%25\": No field"), std::string::npos)
      << result.out;
  EXPECT_NE(result.out.find("\n::error file=x%2Cy.html,line=2,"), std::string::npos);
  EXPECT_NE(result.out.find("title=unknown-key::DTCPrint \"i:d\": "), std::string::npos);
  EXPECT_NE(result.out.find("\"val%25\""), std::string::npos);
  EXPECT_EQ(std::ranges::count(result.out, '\n'), 4);
}

// Returns the elements of a document that consists of nothing else than the given ones, properly
// nested, as "name attribute attribute"; fails the test otherwise.
std::vector<std::string> ElementsOf(const std::string& xml) {
  std::vector<std::string> elements;
  std::vector<std::string> open;
  for (std::size_t at = xml.find('<'); at != std::string::npos; at = xml.find('<', at + 1)) {
    const std::size_t end = xml.find('>', at);
    std::string tag = xml.substr(at + 1, end - at - 1);
    if (tag.starts_with('?')) continue;
    if (tag.starts_with('/')) {
      EXPECT_FALSE(open.empty());
      EXPECT_EQ(tag.substr(1), open.back());
      open.pop_back();
      continue;
    }
    const bool empty = tag.ends_with('/');
    std::string element = tag.substr(0, tag.find_first_of(" /"));
    if (!empty) open.push_back(element);
    for (std::size_t quote = tag.find('"'); quote != std::string::npos;
         quote = tag.find('"', tag.find('"', quote + 1) + 1)) {
      const std::size_t name = tag.rfind(' ', quote) + 1;
      element += ' ' + tag.substr(name, quote - 1 - name);
    }
    elements.push_back(element);
  }
  EXPECT_TRUE(open.empty());
  return elements;
}

TEST_F(Reports, AsTestResultsHaveASuiteForEachPage) {
  Write("good.html", "<p>x");
  const Result result = Kvo({"check", "a b.html", "good.html", "--format", "junit"});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out.find("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites "), 0U);
  const std::string suite = "testsuite name tests failures errors skipped";
  const std::string test = "testcase classname name";
  const std::string failure = "failure type message";
  EXPECT_EQ(ElementsOf(result.out),
            (std::vector<std::string>{"testsuites name tests failures", suite, test, failure, test,
                                      failure, test, failure, suite, test}))
      << result.out;
  EXPECT_NE(result.out.find("tests=\"4\" failures=\"3\""), std::string::npos);
  EXPECT_NE(result.out.find("field &quot;Emial&quot;"), std::string::npos);
}

TEST_F(Reports, RefuseOptionsThatDoNotGoTogether) {
  EXPECT_NE(Kvo({"check", "x", "--format", "jsno"}).err.find("Did you mean \"json\"?"),
            std::string::npos);
  for (const std::vector<std::string>& options :
       std::vector<std::vector<std::string>>{{"--json", "--format", "text"},
                                             {"--dry-run"},
                                             {"--fix", "--dry-run", "--json"},
                                             {"--baseline", "x", "--write-baseline", "y"},
                                             {"--fix", "-"}}) {
    std::vector<std::string> all = {"check", "a b.html"};
    all.insert(all.end(), options.begin(), options.end());
    EXPECT_EQ(Kvo(all).code, 2) << options[0];
  }
  EXPECT_EQ(Read("a b.html"), kPage);
}

TEST_F(Fixing, WritesWhatIsSureAndNamesTheRest) {
  const Result shown = Kvo({"check", "a b.html", "--fix", "--dry-run"});
  EXPECT_EQ(shown.code, 1);
  EXPECT_EQ(shown.out.find("--- a/a b.html"), 0U) << shown.out;
  EXPECT_NE(shown.out.find("\n-<p>\xC3\xA4 #customer.Emial#"), std::string::npos) << shown.out;
  EXPECT_NE(shown.out.find("\n+<p>\xC3\xA4 #customer.Email#"), std::string::npos);
  EXPECT_NE(shown.err.find("[output-without-field]"), std::string::npos);
  EXPECT_EQ(Read("a b.html"), kPage);

  const Result result = Kvo({"check", "a b.html", "--fix"});
  EXPECT_EQ(result.code, 1);
  EXPECT_NE(
      result.out.find("a b.html:1:6: mended: Change \"Emial\" to \"Email\" [unknown-field]\n"),
      std::string::npos)
      << result.out;
  EXPECT_NE(result.out.find("[unknown-key]\n"), std::string::npos);
  EXPECT_NE(result.out.find("error: DTCContact \"A,b:c%\": No field"), std::string::npos);
  EXPECT_EQ(Read("a b.html"), kMendedPage);
  EXPECT_EQ(Kvo({"check", "a b.html", "--fix"}).out.find("mended"), std::string::npos);
  EXPECT_EQ(Files(), (std::vector<std::string>{"a b.html", "office.json"}));
}

TEST_F(KnownProblems, AreNotToldAgainWhereverTheirLinesMove) {
  const Result noted = Kvo({"check", "a b.html", "--write-baseline", "known.json"});
  EXPECT_EQ(noted.code, 0) << noted.err;
  EXPECT_EQ(noted.out, "");
  EXPECT_EQ(Json::parse(Read("known.json"))["problems"].size(), 3U);
  Write("a b.html", "<!-- \n\n -->" + kPage + "#customer.Nix#");
  const Result result = Kvo({"check", "./a b.html", "--baseline", "known.json"});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(std::ranges::count(result.out, '\n'), 1) << result.out;
  EXPECT_NE(result.out.find("\"Nix\""), std::string::npos);
  EXPECT_EQ(result.err, "");

  Write("a b.html", kMendedPage + kContact);
  const Result fewer = Kvo({"check", "a b.html", "--baseline", "known.json", "--json"});
  EXPECT_EQ(fewer.code, 1) << "the copy of a known problem is a new one";
  EXPECT_EQ(Json::parse(fewer.out)["problems"].size(), 2U) << "and has the id of the first";
  EXPECT_NE(fewer.err.find("known.json: is there no more: a b.html: [unknown-field]"),
            std::string::npos)
      << fewer.err;
  EXPECT_NE(fewer.err.find("[unknown-key]"), std::string::npos);
}

TEST_F(KnownProblems, MustBeAList) {
  Write("known.json", "{}");
  const Result result = Kvo({"check", "a b.html", "--baseline", "known.json"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("is no list of known problems"), std::string::npos) << result.err;
  EXPECT_EQ(Kvo({"check", "a b.html", "--baseline", "missing.json"}).code, 2);
}

TEST_F(Reports, NameWhatTroublesMailsOnRequest) {
  Write("x.html", "<p><img src=x><a href=''>y</a>");
  EXPECT_EQ(Kvo({"check", "x.html"}).code, 0);
  const Result result = Kvo({"check", "x.html", "--mail"});
  EXPECT_EQ(result.code, 1);
  EXPECT_NE(result.out.find("x.html:1:4: warning: "), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("[mail-empty-link]"), std::string::npos);
}

}  // namespace
}  // namespace kvo::test::reports
