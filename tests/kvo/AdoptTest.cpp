// kvo adopt, on the old templates of examples/takeover and on small pages.
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

const fs::path kExamples = fs::path(KVO_SOURCE_DIR) / "examples/takeover";

class AdoptTest : public Program {
 protected:
  void CopyExamples() const { fs::copy(kExamples, Folder() / "work/old"); }
};

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

TEST_F(AdoptTest, OldTemplatesPublishTheirOldBytes) {
  CopyExamples();
  const Result adopted = Kvo({"adopt", "old", "--map", "old/uebernahme.json", "-o", "new/"});
  EXPECT_EQ(adopted.code, 1);  // some placeholders are left over
  EXPECT_EQ(adopted.err, "");
  EXPECT_NE(adopted.out.find("20 pages: taken over: "), std::string::npos) << adopted.out;
  fs::create_directory(Folder() / "work/published");
  ASSERT_EQ(Kvo({"publish", "new", "-o", "published"}).code, 0);

  // Placeholders in texts, titles and the like.
  const std::pair<const char*, const char*> tags[] = {
      {"anrede", "<kv:contact field=\"Salutation\"/>"},
      {"vorname", "<kv:contact field=\"FirstName\"/>"},
      {"nachname", "<kv:contact field=\"LastName\"/>"},
      {"ort", "<kv:contact field=\"City\"/>"},
      {"bestellnr", "<kv:order field=\"OrderID\"/>"},
      {"bestelldatum", "<kv:order field=\"OrderDate\" format=\"dd.mm.yyyy\"/>"},
      {"summe", "<kv:order field=\"OrderTotal\" format=\"#,##0.00\"/>"},
      {"versand", "<kv:order field=\"ShippingCosts\" format=\"#,##0.00\"/>"},
      {"zahlung", "<kv:order field=\"PaymentMethod\"/>"},
      {"firma", "<kv:config item=\"company-name\"/>"}};
  int compared = 0;
  for (const std::string page :
       {"rechnung.html", "hand-begruessung.html", "hand-wenn.html", "hand-listen.html",
        "veroeffentlicht-geburtstagsgruss.html", "veroeffentlicht-versandmitteilung.html"}) {
    std::string expected = Read("old/" + page);
    for (const auto& [name, tag] : tags) {
      std::string upper = name;
      std::ranges::transform(upper, upper.begin(), [](char c) { return std::toupper(c); });
      expected = Replaced(expected, "[" + upper + "]", tag);
    }
    EXPECT_EQ(Read("published/" + page), expected) << page;
    ++compared;
  }
  EXPECT_EQ(compared, 6);

  // Elements around attributes.
  EXPECT_NE(Read("published/willkommen.html")
                .find("<kv:click href=\"https://shop.example/konto?mail=#customer.Email#\" "
                      "click-id=\"link-1\">Zu Ihrem Konto</kv:click>"),
            std::string::npos);
  EXPECT_NE(Read("published/bestellung.html")
                .find("<kv:element name=\"a\" class=\"knopf\" href=\"https://shop.example/"
                      "bestellung?nr=#order.OrderID#&amp;von=mail\">"),
            std::string::npos);
  // The new pages are as good as saved ones.
  EXPECT_EQ(Kvo({"check", "new", "--office", "old/office.json"}).out, "");
  EXPECT_EQ(Kvo({"save", "new"}).code, 0);
  EXPECT_EQ(Kvo({"adopt", "new", "--map", "old/uebernahme.json", "--dry-run"}).out.find("@@"),
            std::string::npos);
}

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
