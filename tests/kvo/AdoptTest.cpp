// kvo adopt on small pages.
#include <nlohmann/json.hpp>

#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

using Json = nlohmann::ordered_json;

class AdoptTest : public Program {};

TEST_F(AdoptTest, WritesOverThePageUnlessItIsADryRun) {
  const std::string page = "<p>\n<kv:print value=\"x\"/>\n</p>\n";
  Write("a.html", page);
  const Result dry = Kvo({"adopt", "a.html", "--dry-run"});
  EXPECT_EQ(dry.code, 0);
  EXPECT_NE(dry.out.find("\n-<kv:print value=\"x\"/>\n+<object classid="), std::string::npos);
  EXPECT_EQ(Read("a.html"), page);
  EXPECT_EQ(Kvo({"adopt", "a.html"}).out, "a.html: taken over: 1, kept: 0\n");
  EXPECT_EQ(Kvo({"publish", "a.html", "-o", "-"}).out, page);
  EXPECT_EQ(KvoGerman({"adopt", "a.html"}).out, "a.html: übernommen: 0, geblieben: 0\n");
}

TEST_F(AdoptTest, StandardInputGoesToStandardOutput) {
  const Result adopted = Kvo({"adopt", "-"}, "<kv:print value=\"x\"/>{{ a }}");
  EXPECT_EQ(adopted.code, 1);
  EXPECT_EQ(adopted.out, PrintElement("x").replace(PrintElement("x").find("</object>"), 0,
                                                   "<param name=\"format\" value=\"\">") +
                             "{{ a }}");
  EXPECT_EQ(adopted.err,
            "<stdin>: taken over: 1, kept: 1\n<stdin>:1:22: kept: {{ a }}: The mapping does not "
            "have it. Add it there.\n");
  EXPECT_EQ(Kvo({"adopt", "-", "--json"}, "x").code, 2);
}

TEST_F(AdoptTest, PlaceholdersInBlocksBecomeTagsInTheirContents) {
  Write("m.json", R"({"placeholders": [{"pattern": "{{ {name} }}", "fields": {
                      "a": "customer.A", "b": {"field": "order.B", "format": "0"}}}]})");
  const auto page = [](const std::string& a, const std::string& inAttribute, const std::string& b) {
    return "<p><!--KVO BLOCKLEVEL ELEMENT STARTSPAN<kv:if test=\"%1==1%\">" + a +
           ", <a href=" + inAttribute + ">{{ x }}</a><kv:else>" + b +
           "</kv:else></kv:if>KVO BLOCKLEVEL ELEMENT ENDSPAN--></p>\n";
  };
  Write("a.html", page("{{ a }}", "\"?{{ a }}\"", "{{b}}"));
  const Result adopted = Kvo({"adopt", "a.html", "--map", "m.json"});
  EXPECT_EQ(adopted.code, 1);
  EXPECT_EQ(adopted.out,
            "a.html: taken over: 1, kept: 1\na.html:1:89: kept: {{ x }}: The mapping does not have "
            "it. Add it there.\n");
  EXPECT_NE(Read("a.html").find("DTCIf"), std::string::npos);
  EXPECT_EQ(Kvo({"publish", "a.html", "-o", "-"}).out,
            page("<kv:contact field=\"A\"/>", "'?<kv:contact field=\"A\"/>'",
                 "<kv:order field=\"B\" format=\"0\"/>"));
}

TEST_F(AdoptTest, SuggestsLinesForTheMapping) {
  Write(
      "office.json",
      R"({"contactFields": [{"sqlName": "FirstName", "displayName": "Vorname", "dataType": 0}]})");
  Write("a.html", "{{ vorname }} {{ Vorname }}");
  const Result adopted = Kvo({"adopt", "a.html", "--dry-run"});
  EXPECT_EQ(adopted.code, 1);
  EXPECT_NE(adopted.out.find("Suggestions for \"fields\" in the mapping:\n"
                             "  \"vorname\": \"customer.FirstName\",\n"),
            std::string::npos)
      << adopted.out;
}

TEST_F(AdoptTest, ListsEverythingAsJson) {
  Write("a.html", "<kv:print value=\"x\"/>\n<kv:print value='x'/>");
  const Json json = Json::parse(Kvo({"adopt", "a.html", "--dry-run", "--json"}).out);
  const Json& page = json["pages"][0];
  EXPECT_EQ(page["taken"], 1);
  EXPECT_EQ(page["kept"], 1);
  EXPECT_EQ(page["finds"][0]["class"], "DTCPrint");
  EXPECT_EQ(page["finds"][0]["properties"]["Value"], "x");
  EXPECT_EQ(page["finds"][1]["result"], "kept");
  EXPECT_EQ(page["finds"][1]["line"], 2);
}

TEST_F(AdoptTest, LeavesFaultyPagesAndMappingsAlone) {
  const std::string page = "<kv:print value=\"x\"/><!-- " + PrintElement("y") + " -->";
  Write("a.html", page);
  const Result faulty = Kvo({"adopt", "a.html"});
  EXPECT_EQ(faulty.code, 1);
  EXPECT_NE(faulty.err.find("[misplaced-control]"), std::string::npos);
  EXPECT_EQ(Read("a.html"), page);
  Write("m.json", "{\"links\": 1}");
  Write("b.html", "<kv:print value=\"x\"/>");
  const Result mapping = Kvo({"adopt", "b.html", "--map", "m.json"});
  EXPECT_EQ(mapping.code, 2);
  EXPECT_NE(mapping.err.find("m.json:1:11: error: links: "), std::string::npos) << mapping.err;
  EXPECT_EQ(Read("b.html"), "<kv:print value=\"x\"/>");
  EXPECT_EQ(Kvo({"adopt", "b.html", "--map", "missing.json"}).code, 2);
}

}  // namespace
}  // namespace kvo::test
