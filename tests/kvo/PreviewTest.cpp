#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

using Json = nlohmann::ordered_json;

const std::filesystem::path kExamples = KVO_SOURCE_DIR "/examples";

std::string Contact(const std::string& field, const std::string& id = "") {
  return ControlElement("DTCContact", {{"field", field}}, id);
}

class PreviewCommand : public Program {
 protected:
  PreviewCommand() {
    Write("page.html", "<html><body><p>" + Contact("Name", "Name") + "</p>\n<p>" +
                           Contact("City", "Ort") + "</p></body></html>\n");
    Write("preview.json", R"({"records": [
      {"name": "Anna", "customer": {"Name": "Anna & \"Co\" <b>", "City": "Kiel"}},
      {"name": "Jörg", "customer": {"Name": "Jörg"}}
    ]})");
  }

  // What the page became, without the line above it that says what it is.
  std::string Body(const std::string& file) const {
    const std::string text = Read(file);
    const std::size_t at = text.find("<p>");
    EXPECT_NE(at, std::string::npos) << text;
    return text.substr(at, text.find("</body>") - at);
  }
};

TEST_F(PreviewCommand, ShowsTheFirstRecordInAFile) {
  const Result result = Kvo({"preview", "page.html", "-o", "x.html"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out + result.err, "");
  EXPECT_EQ(Body("x.html"), "<p>Anna &amp; &quot;Co&quot; &lt;b&gt;</p>\n<p>Kiel</p>");
  EXPECT_NE(Read("x.html").find("Preview with sample data"), std::string::npos);
  EXPECT_EQ(KvoGerman({"preview", "page.html", "-o", "x.html"}).code, 0);
  EXPECT_NE(Read("x.html").find("Vorschau mit Beispieldaten"), std::string::npos);
}

TEST_F(PreviewCommand, WritesToStandardOutput) {
  const Result result = Kvo({"preview", "-", "--records", "preview.json", "-o", "-"},
                            "<p>" + Contact("City") + "</p>");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_NE(result.out.find("<p>Kiel</p>"), std::string::npos) << result.out;
}

TEST_F(PreviewCommand, ChoosesARecordByNameOrNumber) {
  for (const char* record : {"Jörg", "2"}) {
    EXPECT_EQ(Kvo({"preview", "page.html", "--record", record, "-o", "x.html"}).code, 0);
    EXPECT_NE(Body("x.html").find("<p>Jörg</p>"), std::string::npos) << record;
  }
  const Result result = Kvo({"preview", "page.html", "--record", "Ana", "-o", "x.html"});
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.err, "kvo: error: There is no record \"Ana\". Did you mean \"Anna\"?\n");
  EXPECT_EQ(KvoGerman({"preview", "page.html", "--record", "3", "-o", "x.html"}).err,
            "kvo: Fehler: Es gibt keinen Datensatz „3“.\n");
}

TEST_F(PreviewCommand, ShowsEveryRecordInAFolder) {
  const Result result = Kvo({"preview", "page.html", "-o", "out/"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "out/page.Anna.html\nout/page.Jörg.html\n");
  EXPECT_NE(result.err.find("page.html:2:4: missing: DTCContact \"Ort\": "), std::string::npos)
      << result.err;
  EXPECT_NE(result.err.find(" (Jörg)\n"), std::string::npos) << result.err;
  EXPECT_NE(Read("out/page.Anna.html").find("Kiel"), std::string::npos);
  // An existing folder needs no "/", and one record may go there, too.
  EXPECT_EQ(Kvo({"preview", "page.html", "--record", "1", "-o", "out"}).out,
            "out/page.Anna.html\n");
}

class PreviewOfManyPages : public PreviewCommand {
 protected:
  PreviewOfManyPages() {
    for (const char* folder : {"shop/broken", "shop/without"})
      std::filesystem::create_directories(Folder() / "work" / folder);
    std::filesystem::rename(Folder() / "work/preview.json", Folder() / "work/shop/preview.json");
    const std::string page = "<p>" + Contact("City") + "</p>";
    for (const char* file : {"shop/b.html", "shop/a.htm", "shop/without/d.html"}) Write(file, page);
    Write("shop/b-faulty.html", "<p>x</p>" + ControlElement("DTCPrint", {{"y", ""}}));
    for (const char* file : {"shop/broken/a.html", "shop/broken/c.html"}) Write(file, page);
    Write("shop/broken/preview.json", R"({"records": [{]})");
  }
};

TEST_F(PreviewOfManyPages, GoesOnBehindAFaultyPage) {
  const Result result = Kvo({"preview", "shop", "-o", "out"});
  EXPECT_EQ(result.code, 2);
  const std::string written =
      "out/a.Anna.html\nout/a.Jörg.html\nout/b-faulty.Anna.html\nout/b-faulty.Jörg.html\n"
      "out/b.Anna.html\nout/b.Jörg.html\nout/without/d.Erika_Muster.html\n";
  EXPECT_EQ(result.out, written);
  for (const char* file : {"out/a.Anna.html", "out/b.Anna.html"})
    EXPECT_EQ(Body(file), "<p>Kiel</p>") << file;
  EXPECT_EQ(Body("out/b-faulty.Jörg.html").substr(0, 8), "<p>x</p>");
  EXPECT_FALSE(std::filesystem::exists(Folder() / "work/out/broken/a.Anna.html"));
  // In the order of the pages, and what keeps two of them back only once.
  std::size_t at = 0;
  for (const std::string_view line :
       {"shop/a.htm:1:4: missing: DTCContact: ", "shop/b-faulty.html:1:",
        "shop/b.html:1:4: missing:", "shop/broken/preview.json:1:15: error: ",
        "kvo: error: There is no preview of shop/broken/a.html;",
        "kvo: error: There is no preview of shop/broken/c.html;", "kvo: There are no records"}) {
    at = result.err.find(line, at);
    EXPECT_NE(at, std::string::npos) << line << '\n' << result.err;
  }
  EXPECT_EQ(result.err.find("preview.json:1:15"), result.err.rfind("preview.json:1:15"));

  std::filesystem::remove_all(Folder() / "work/shop/broken");
  EXPECT_EQ(Kvo({"preview", "shop", "-o", "out"}).code, 1);  // for the faulty page
  std::filesystem::remove(Folder() / "work/shop/b-faulty.html");
  EXPECT_EQ(Kvo({"preview", "shop", "-o", "out"}).code, 0);
}

TEST_F(PreviewOfManyPages, PrintsOneDocument) {
  const Result result = Kvo({"preview", "shop", "-o", "out", "--record", "Jörg", "--json"});
  EXPECT_EQ(result.code, 2);
  const Json pages = Json::parse(result.out)["pages"];
  ASSERT_EQ(pages.size(), 3U);
  EXPECT_EQ(pages[0]["file"], "shop/a.htm");
  EXPECT_EQ(pages[1]["file"], "shop/b-faulty.html");
  EXPECT_EQ(pages[2]["previews"][0]["file"], "out/b.Jörg.html");
  EXPECT_NE(result.err.find("There is no record \"Jörg\"."), std::string::npos) << result.err;
  EXPECT_NE(result.err.find("There is no preview of shop/without/d.html;"), std::string::npos);
}

TEST_F(PreviewOfManyPages, EndsAtAFileThatTheUserNames) {
  const Result result =
      Kvo({"preview", "shop", "-o", "out", "--records", "shop/broken/preview.json"});
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err.find("There is no preview"), std::string::npos) << result.err;
}

TEST_F(PreviewCommand, NamesFilesSafelyAndOnce) {
  Write("page.html", "<p>x</p>");
  Json records = Json::array();
  for (const char* name : {"../../etc/passwd", "a/b", "A/B", "a?b", "", "..", "\u202Ex\n\x01y"})
    records.push_back({{"name", name}});
  records.push_back({{"name", std::string(300, 'n')}});
  Write("preview.json", Json({{"records", records}}).dump());
  const Result result = Kvo({"preview", "page.html", "-o", "out/"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(result.out,
            "out/page.______etc_passwd.html\n"
            "out/page.a_b.html\n"
            "out/page.A_B-3.html\n"
            "out/page.a_b-4.html\n"
            "out/page.5.html\n"
            "out/page.__.html\n"
            "out/page.\u202Ex__y.html\n"
            "out/page." +
                std::string(100, 'n') + ".html\n");
  EXPECT_EQ(Files(), (std::vector<std::string>{"out", "page.html", "preview.json"}));
}

TEST_F(PreviewCommand, FindingsOfManyRecordsAreOneLine) {
  Json records = Json::array();
  for (int i = 0; i < 50; ++i) records.push_back({{"name", "R" + std::to_string(i)}});
  Write("preview.json", Json({{"records", records}}).dump());
  const Result result = Kvo({"preview", "page.html", "-o", "out/"});
  EXPECT_EQ(std::ranges::count(result.err, '\n'), 2) << result.err;
  EXPECT_NE(result.err.find(" (R0 and 49 more)\n"), std::string::npos) << result.err;
}

TEST_F(PreviewCommand, StrictEndsWith1WhenSomethingIsMissing) {
  EXPECT_EQ(Kvo({"preview", "page.html", "--strict", "-o", "x.html"}).code, 0);
  EXPECT_EQ(Kvo({"preview", "page.html", "--strict", "--record", "2", "-o", "x.html"}).code, 1);
  EXPECT_NE(Body("x.html").find("<p>Jörg</p>"), std::string::npos);  // written nevertheless
  // What only the engine knows is not missing.
  Write("page.html", "<p>" + ControlElement("DTCScript", {{"html-content", "x();"}}) + "</p>");
  const Result result = Kvo({"preview", "page.html", "--strict", "-o", "x.html"});
  EXPECT_EQ(result.code, 0);
  EXPECT_NE(result.err.find("page.html:1:4: outside: DTCScript: "), std::string::npos)
      << result.err;
}

TEST_F(PreviewCommand, APageWithErrorsEndsWith1) {
  Write("page.html", "<p>" + Contact("Name") +
                         "</p><object classid=\"progid:KVOPDesignObjects.DTCQuatsch\"></object>");
  const Result result = Kvo({"preview", "page.html", "-o", "x.html"});
  EXPECT_EQ(result.code, 1);
  EXPECT_NE(result.err.find("[unknown-class]"), std::string::npos) << result.err;
  EXPECT_NE(Read("x.html").find("Anna"), std::string::npos);
}

TEST_F(PreviewCommand, WithoutRecordsValuesAreMadeUp) {
  std::filesystem::remove(Folder() / "work/preview.json");
  Write("office.json", R"({"contactFields": [
    {"sqlName": "Name", "displayName": "Nachname", "dataType": 0},
    {"sqlName": "City", "displayName": "Ort", "dataType": 0}]})");
  const Result result = Kvo({"preview", "page.html", "--strict", "-o", "x.html"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "kvo: There are no records (preview.json); all values are made up.\n");
  EXPECT_EQ(Body("x.html"), "<p>Muster</p>\n<p>Musterstadt</p>");
  EXPECT_NE(Read("x.html").find("made-up"), std::string::npos);
}

TEST_F(PreviewCommand, RecordsMayHaveAFileOfTheirOwn) {
  Write("other.json", R"({"records": [{"customer": {"Name": "Otto", "City": "Ulm"}}]})");
  EXPECT_EQ(Kvo({"preview", "page.html", "--records", "other.json", "-o", "x.html"}).code, 0);
  EXPECT_EQ(Body("x.html"), "<p>Otto</p>\n<p>Ulm</p>");
}

TEST_F(PreviewCommand, BrokenRecordsAreReportedAndNothingIsWritten) {
  Write("preview.json", "{\"record\": []}");
  const Result result = Kvo({"preview", "page.html", "-o", "x.html"});
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.err,
            "preview.json:1:2: error: record: there is no such key. Did you mean \"records\"? "
            "[preview-file]\n");
  EXPECT_FALSE(Exists("x.html"));
  EXPECT_EQ(Kvo({"preview", "page.html", "--records", "missing.json", "-o", "x.html"}).code, 2);
  EXPECT_EQ(Kvo({"preview", "missing.html", "-o", "x.html"}).code, 2);
}

TEST_F(PreviewCommand, AFrameHasTheWidth) {
  EXPECT_EQ(Kvo({"preview", "page.html", "--width", "360", "-o", "x.html"}).code, 0);
  const std::string page = Read("x.html");
  EXPECT_EQ(page.find("<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">"), 0U);
  EXPECT_NE(page.find("<iframe sandbox width=\"360\""), std::string::npos);
  EXPECT_NE(page.find("&lt;p>Anna &amp;amp; &amp;quot;Co&amp;quot; &amp;lt;b&amp;gt;&lt;/p>"),
            std::string::npos)
      << page;
  EXPECT_EQ(page.find("<p>"), std::string::npos);
  for (const char* width : {"0", "-1", "10001", "600px", "x", "99999999999"}) {
    const Result result = Kvo({"preview", "page.html", "--width=" + std::string(width), "-o", "y"});
    EXPECT_EQ(result.code, 2) << width;
    EXPECT_FALSE(Exists("y"));
  }
}

TEST_F(PreviewCommand, AFrameIsInUtf8) {
  Write("page.html",
        "<html><head><meta charset=\"iso-8859-1\"></head><body><p>Gr\xFC\xDF"
        "e</p></body></html>");
  EXPECT_EQ(Kvo({"preview", "page.html", "--width", "600", "-o", "x.html"}).code, 0);
  EXPECT_NE(Read("x.html").find("&lt;p>Grüße&lt;/p>"), std::string::npos);
  EXPECT_EQ(Kvo({"preview", "page.html", "-o", "x.html"}).code, 0);
  EXPECT_NE(Read("x.html").find("<p>Gr\xFC\xDF"
                                "e</p>"),
            std::string::npos);
}

TEST_F(PreviewCommand, ListsWhatIsMissingAsJson) {
  const Result result = Kvo({"preview", "page.html", "-o", "out/", "--json"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
  const Json document = Json::parse(result.out);
  EXPECT_EQ(result.out, document.dump(2) + '\n');
  ASSERT_EQ(document["previews"].size(), 2U);
  EXPECT_EQ(document["previews"][0]["file"], "out/page.Anna.html");
  EXPECT_EQ(document["previews"][0]["findings"], Json::array());
  const Json& second = document["previews"][1];
  EXPECT_EQ(second["record"], "Jörg");
  EXPECT_EQ(second["madeUp"], false);
  ASSERT_EQ(second["findings"].size(), 1U);
  const Json& finding = second["findings"][0];
  EXPECT_EQ(finding["kind"], "missing");
  EXPECT_EQ(finding["line"], 2);
  EXPECT_EQ(finding["column"], 4);
  EXPECT_EQ(finding["class"], "DTCContact");
  EXPECT_EQ(finding["id"], "Ort");
  EXPECT_NE(finding["message"].get<std::string>().find("City"), std::string::npos);
  EXPECT_EQ(document["coverage"], Json::array());
}

TEST_F(PreviewCommand, ShowsEachBranchAndItsCoverage) {
  const std::string page = (kExamples / "newsletter/newsletter.html").string();
  const Result result = Kvo({"preview", page, "--all-branches", "-o", "out"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out,
            "out/newsletter.1.html\n"
            "out/newsletter.2.html\n"
            "\n"
            "place  switch                        form    variant\n"
            "22:10  Mit Namen oder ohne (Anrede)  true    1\n"
            "                                     false   2\n"
            "30:21  product list (Angebote)       filled  1\n"
            "                                     empty   2\n"
            "44:7   position list (Positionen)    filled  1\n"
            "                                     empty   2\n"
            "\n"
            "Forms shown: 6 of 6; variants: 2.\n");
  EXPECT_NE(Read("out/newsletter.1.html").find("Guten Tag Frau Petersen,"), std::string::npos);
  EXPECT_NE(Read("out/newsletter.2.html").find("<p>Guten Tag,</p>"), std::string::npos);

  const Result json = Kvo({"preview", page, "--all-branches", "-o", "out", "--json"});
  const Json coverage = Json::parse(json.out)["coverage"];
  ASSERT_EQ(coverage.size(), 3U);
  EXPECT_EQ(coverage[0], Json({{"line", 22},
                               {"column", 10},
                               {"class", "DTCIf"},
                               {"id", "Anrede"},
                               {"kind", "condition"},
                               {"name", "Mit Namen oder ohne"},
                               {"holds", {1}},
                               {"fails", {2}}}));
  const Result german = KvoGerman({"preview", page, "--all-branches", "-o", "out"});
  EXPECT_NE(german.out.find("Gezeigte Formen: 6 von 6; Varianten: 2.\n"), std::string::npos)
      << german.out;
}

TEST_F(PreviewCommand, SaysWhatNoBranchShows) {
  const auto condition = [](const std::string& name, const std::string& inner) {
    return "<kv:if test=\"%#customer.Name#=='x'%\" display-value=\"" + name + "\">" + inner +
           "</kv:if>";
  };
  Write("page.html", "<p>" + condition("A", condition("B", "x")) + "</p>");
  const Result result = Kvo({"preview", "page.html", "--all-branches", "-o", "out"});
  EXPECT_EQ(result.code, 0);
  EXPECT_NE(result.out.find("none"), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("Forms shown: 3 of 4; variants: 2.\n"), std::string::npos)
      << result.out;
  Write("page.html", "<p>x</p>");
  EXPECT_EQ(Kvo({"preview", "page.html", "--all-branches", "-o", "out"}).out,
            "out/page.1.html\n\n"
            "The page has no conditions and lists; it always looks the same.\n");
}

TEST_F(PreviewCommand, WrongUseEndsWith2) {
  EXPECT_EQ(Kvo({"preview", "page.html"}).err,
            "kvo: error: Where to? Name a file or a folder with -o, or \"-o -\" for standard "
            "output.\n");
  EXPECT_EQ(Kvo({"preview", "page.html"}).code, 2);
  for (const char* option : {"--json", "--all-branches"})
    EXPECT_EQ(Kvo({"preview", "page.html", option, "-o", "-"}).code, 2) << option;
  // A preview never overwrites what it is made of.
  for (const char* own : {"page.html", "own.json"}) {
    Write("own.json", Read("preview.json"));
    const std::string before = Read(own);
    const Result result = Kvo({"preview", "page.html", "--records", "own.json", "-o", own});
    EXPECT_EQ(result.code, 2) << own;
    EXPECT_EQ(Read(own), before);
  }
}

TEST_F(PreviewCommand, AnOfficeBesideThePageChoosesNoDatabase) {
  Write("office.json", R"({"shopDatabase": "sqlite3://shop.db"})");
  Write("preview.json", R"({"records": [{"name": "A", "customer": {"Name": "A", "City": "B"}}],
                            "query": "SELECT 1"})");
  const std::string why = "The query for records is run only in a shop that --office names.\n";
  EXPECT_EQ(Kvo({"preview", "page.html", "-o", "x.html"}).err, "");
  EXPECT_EQ(Kvo({"preview", "page.html", "--record", "A", "-o", "x.html"}).err, "");
  const Result all = Kvo({"preview", "page.html", "-o", "out/"});
  EXPECT_EQ(all.code, 2);
  EXPECT_EQ(all.out, "out/page.A.html\n");
  EXPECT_EQ(all.err, "kvo: error: " + why);
  EXPECT_EQ(Kvo({"preview", "page.html", "--record", "Zacharias", "-o", "x.html"}).err,
            "kvo: error: There is no record \"Zacharias\". " + why);
  Write("preview.json", R"({"query": "SELECT 1"})");
  EXPECT_EQ(Kvo({"preview", "page.html", "-o", "x.html"}).err, "kvo: error: " + why);

  Write("preview.json", "{}");
  Write("page.html", "<p>" +
                         ControlElement("DTCProductList", {{"basename", "productlist"},
                                                           {"selected-products", "P-1"}}) +
                         "</p>");
  const Result products = Kvo({"preview", "page.html", "--strict", "-o", "x.html"});
  EXPECT_EQ(products.code, 0);
  EXPECT_NE(products.err.find("Products are looked up only in a shop that --office names."),
            std::string::npos)
      << products.err;
  EXPECT_FALSE(Exists("shop.db"));
}

TEST_F(PreviewCommand, TheExamplesMissNothing) {
  for (const char* page :
       {"newsletter/newsletter.html", "templates/newsletter.html",
        "templates/bestellbestaetigung.html", "templates/versandmitteilung.html"}) {
    const Result result = Kvo({"preview", (kExamples / page).string(), "-o", "out/", "--strict"});
    EXPECT_EQ(result.code, 0) << page << '\n' << result.err;
    EXPECT_EQ(std::ranges::count(result.out, '\n'), 3) << page;
  }
}

}  // namespace
}  // namespace kvo::test
