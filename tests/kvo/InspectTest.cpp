#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "host/registration/classes.h"
#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

using Json = nlohmann::ordered_json;
using InspectCommand = Program;
using CheckCommand = Program;
using ClassesCommand = Program;
using PictureCommand = Program;

std::vector<std::string> Keys(const Json& object) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : object.items()) keys.push_back(key);
  return keys;
}

const std::string kFailing =
    "<object classid=\"progid:KVOPDesignObjects.DTCElement\" id=\"Zelle\"><param name=\"value\" "
    "value=\"td\"><param name=\"attributes\" value=\"align\"></object>";

TEST_F(InspectCommand, JsonHasTheKeysAndValuesOfEachControl) {
  Write("x.html", "<p>ä" + PrintElement("&#228;&amp;", "Preis") + "\n");
  const Result result = Kvo({"inspect", "x.html", "--json"});
  EXPECT_EQ(result.code, 0) << result.err;
  const Json document = Json::parse(result.out);
  EXPECT_EQ(Keys(document), std::vector<std::string>{"controls"});
  ASSERT_EQ(document["controls"].size(), 1U);
  const Json& control = document["controls"][0];
  EXPECT_EQ(Keys(control), (std::vector<std::string>{"index", "id", "class", "line", "column",
                                                     "bag", "properties", "runtimeText", "box"}));
  EXPECT_EQ(control["index"], 0);
  EXPECT_EQ(control["id"], "Preis");
  EXPECT_EQ(control["class"], "DTCPrint");
  EXPECT_EQ(control["line"], 1);
  EXPECT_EQ(control["column"], 5);
  EXPECT_EQ(control["bag"], Json::parse(R"([["value", "ä&"], ["format", ""]])"));
  EXPECT_EQ(control["properties"], Json::parse(R"({"Namespace": "kv", "basename": "print",
      "DisplayBasename": "", "Value": "ä&", "DisplayValue": "", "Format": ""})"));
  EXPECT_EQ(Keys(control["properties"])[0], "Namespace");
  EXPECT_EQ(control["runtimeText"], "<kv:print value=\"ä&\"/>");
  const Json& box = control["box"];
  EXPECT_EQ(Keys(box), (std::vector<std::string>{"width", "height", "elements"}));
  EXPECT_EQ(box["height"], 390);
  ASSERT_EQ(box["elements"].size(), 3U);
  EXPECT_EQ(box["elements"][0]["caption"], "print");
  EXPECT_EQ(box["elements"][0]["left"], 120);
  EXPECT_EQ(box["elements"][1]["caption"], "ä&");
  EXPECT_EQ(box["elements"][2]["name"], "shpBorder");
  EXPECT_EQ(box["elements"][2]["width"], box["width"].get<int>() - 30);
  EXPECT_NE(result.out.find("ä&"), std::string::npos) << "UTF-8, not escaped";
}

TEST_F(InspectCommand, FlagsAndNumbersKeepTheirTypes) {
  const Result element = Kvo({"new", "DTCProductList", "DisplayColumns=3", "DisplayPrice=false"});
  const Json document = Json::parse(Kvo({"inspect", "-", "--json"}, element.out).out);
  const Json& properties = document["controls"][0]["properties"];
  EXPECT_EQ(properties["DisplayColumns"], 3);
  EXPECT_EQ(properties["DisplayPrice"], false);
  EXPECT_TRUE(properties["Office"].is_null());
}

TEST_F(InspectCommand, FailingControlsDoNotHideTheOthers) {
  Write("x.html", kFailing + "<object classid=\"progid:KVOPDesignObjects.DTCNone\"></object>" +
                      PrintElement("x"));
  const Result result = Kvo({"inspect", "x.html", "--json"});
  EXPECT_EQ(result.code, 1);
  const Json controls = Json::parse(result.out)["controls"];
  ASSERT_EQ(controls.size(), 3U);
  EXPECT_EQ(controls[0]["error"]["number"], 9);
  EXPECT_NE(controls[0]["error"]["message"].get<std::string>(), "");
  EXPECT_FALSE(controls[0].contains("runtimeText"));
  EXPECT_EQ(controls[0]["properties"]["Value"], "td");
  EXPECT_EQ(controls[1]["class"], "DTCNone");
  EXPECT_TRUE(controls[1]["error"]["number"].is_null());
  EXPECT_NE(controls[1]["error"]["message"].get<std::string>(), "");
  EXPECT_EQ(controls[2]["runtimeText"], "<kv:print value=\"x\"/>");
  const Result text = Kvo({"inspect", "x.html"});
  EXPECT_EQ(text.code, 1);
  EXPECT_NE(text.out.find("error 9: Subscript out of range"), std::string::npos) << text.out;
  EXPECT_NE(text.out.find("=> <kv:print value=\"x\"/>"), std::string::npos) << text.out;
}

TEST_F(InspectCommand, TextShowsPlaceClassIdStoredKeysAndRuntimeText) {
  Write("x.html", "\n" + PrintElement("a", "A"));
  EXPECT_EQ(Kvo({"inspect", "x.html"}).out,
            "x.html:2:1: DTCPrint \"A\"\n"
            "    value = a\n"
            "    format = \n"
            "    => <kv:print value=\"a\"/>\n");
}

TEST_F(InspectCommand, PageWithoutControlsIsGood) {
  const Result text = Kvo({"inspect", "-"}, "<p>");
  EXPECT_EQ(text.code, 0);
  EXPECT_EQ(text.out, "<stdin> holds no controls.\n");
  EXPECT_EQ(Json::parse(Kvo({"inspect", "-", "--json"}, "<p>").out),
            Json::parse(R"({"controls": []})"));
}

TEST_F(InspectCommand, EveryClassIsInspected) {
  std::string page;
  for (const RegisteredControl& control : RegisteredControls())
    page += Kvo({"new", std::string(control.contract().name)}).out;
  const Result result = Kvo({"inspect", "-", "--json"}, page);
  EXPECT_EQ(result.code, 0) << result.err;
  const Json controls = Json::parse(result.out)["controls"];
  ASSERT_EQ(controls.size(), RegisteredControls().size());
  for (std::size_t i = 0; i < controls.size(); ++i) {
    const ControlClass& contract = RegisteredControls()[i].contract();
    EXPECT_EQ(controls[i]["class"], contract.name);
    EXPECT_EQ(controls[i]["properties"].size(), contract.properties.size());
    EXPECT_EQ(controls[i]["box"]["elements"].size(), contract.box.Labels().size() + 1);
    EXPECT_TRUE(controls[i].contains("runtimeText")) << contract.name;
  }
}

TEST_F(CheckCommand, GoodPagePrintsNothing) {
  const Result result = Kvo({"check", "-"}, PrintElement("x"));
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out + result.err, "");
}

TEST_F(CheckCommand, JsonListsProblemsOfAllPages) {
  Write("a.html", kFailing);
  Write("b.html", "\n<object classid=\"progid:KVOPDesignObjects.DTCNone\" id=\"N\"></object>");
  const Result result = Kvo({"check", "a.html", "b.html", "--json"});
  EXPECT_EQ(result.code, 1);
  const Json document = Json::parse(result.out);
  EXPECT_EQ(Keys(document), std::vector<std::string>{"problems"});
  ASSERT_GE(document["problems"].size(), 2U);
  EXPECT_EQ(document["problems"].front()["file"], "a.html");
  EXPECT_EQ(document["problems"].front()["class"], "DTCElement");
  const Json& second = document["problems"].back();
  EXPECT_EQ(second["file"], "b.html");
  EXPECT_EQ(Keys(second), (std::vector<std::string>{"file", "line", "column", "severity", "rule",
                                                    "class", "id", "message"}));
  EXPECT_EQ(second["line"], 2);
  EXPECT_EQ(second["column"], 1);
  EXPECT_EQ(second["severity"], "error");
  EXPECT_EQ(second["rule"], "unknown-class");
  EXPECT_EQ(second["id"], "N");
}

std::string ContactElement(const std::string& field) {
  return "<object classid=\"progid:KVOPDesignObjects.DTCContact\"><param name=\"field\" value=\"" +
         field + "\"></object>";
}

const std::string kOffice =
    R"({"contactFields": [{"sqlName": "Email", "displayName": "E-Mail", "dataType": 0}]})";

TEST_F(CheckCommand, FieldsAreLookedUpInTheOfficeNextToThePage) {
  std::filesystem::create_directory(Folder() / "work" / "shop");
  Write("shop/x.html", ContactElement("Emial"));
  EXPECT_EQ(Kvo({"check", "shop/x.html"}).code, 0) << "without an office any field is accepted";
  Write("shop/office.json", kOffice);
  const Result result = Kvo({"check", "shop/x.html"});
  EXPECT_EQ(result.code, 1);
  EXPECT_NE(result.out.find("shop/x.html:1:1: error: DTCContact"), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("[unknown-field]"), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("Email"), std::string::npos) << result.out;
}

TEST_F(CheckCommand, OfficeOptionNamesAnotherOne) {
  Write("x.html", ContactElement("Emial"));
  Write("other.json", kOffice);
  EXPECT_EQ(Kvo({"check", "x.html", "--office", "other.json"}).code, 1);
  Write("x.html", ContactElement("Email"));
  EXPECT_EQ(Kvo({"check", "x.html", "--office", "other.json"}).code, 0);
  EXPECT_EQ(Kvo({"check", "x.html", "--office", "missing.json"}).code, 2);
}

TEST_F(CheckCommand, BrokenOfficeIsAFailureWithAPlace) {
  Write("x.html", ContactElement("Email"));
  Write("office.json", "{\n  \"contactField\": []\n}");
  const Result result = Kvo({"check", "x.html"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("office.json:2:3: error: "), std::string::npos) << result.err;
}

TEST_F(CheckCommand, BrokenOfficeDoesNotStopTheOtherPages) {
  namespace fs = std::filesystem;
  for (const char* folder : {"json", "pipe", "endless", "large", "folder", "good"}) {
    fs::create_directory(Folder() / "work" / folder);
    Write(std::string(folder) + "/x.html", ContactElement("Emial") + PrintElement(""));
    Write(std::string(folder) + "/y.html", ContactElement("Emial"));
  }
  Write("json/office.json", "{");
  ASSERT_EQ(mkfifo((Folder() / "work/pipe/office.json").c_str(), 0600), 0);
  fs::create_symlink("/dev/zero", Folder() / "work/endless/office.json");
  Write("large/office.json", "");
  fs::resize_file(Folder() / "work/large/office.json", 5'000'000);
  fs::create_directory(Folder() / "work/folder/office.json");
  Write("good/office.json", kOffice);
  const Result result = Kvo({"check", "json/x.html", "json/y.html", "pipe/x.html", "endless/x.html",
                             "large/x.html", "folder/x.html", "good/x.html"});
  EXPECT_EQ(result.code, 2);
  const auto said = [&result](const std::string& part) {
    const std::size_t at = result.err.find(part);
    EXPECT_NE(at, std::string::npos) << part << '\n' << result.err;
    EXPECT_EQ(result.err.find(part, at + 1), std::string::npos) << "twice: " << part;
  };
  said("json/office.json:1:2: error: ");
  said("\"pipe/office.json\": This is a pipe or a device.");
  said("\"endless/office.json\": This is a pipe or a device.");
  said("\"large/office.json\": The file is too large");
  said("\"folder/office.json\": This is a folder.");
  EXPECT_NE(result.out.find("good/x.html:1:1: error: DTCContact: There is no contact field"),
            std::string::npos)
      << result.out;
  EXPECT_NE(KvoGerman({"check", "pipe/x.html"}).err.find("eine Pipe oder ein Gerät"),
            std::string::npos);
  EXPECT_NE(KvoGerman({"check", "large/x.html"}).err.find("zu groß"), std::string::npos);
}

TEST_F(CheckCommand, NamedOfficeIsReadOnceForAllPages) {
  Write("x.html", ContactElement("Emial"));
  Write("y.html", ContactElement("Emial"));
  ASSERT_EQ(mkfifo((Folder() / "work/pipe").c_str(), 0600), 0);
  const Result pipe = Kvo({"check", "x.html", "y.html", "--office", "pipe"});
  EXPECT_EQ(pipe.code, 2);
  EXPECT_EQ(pipe.err, "kvo: error: \"pipe\": This is a pipe or a device. Name a regular file.\n");
  EXPECT_EQ(Kvo({"pages", "DTCContact", "--office", "pipe", "-o", "out"}).code, 2);
  const Result input = Kvo({"check", "x.html", "y.html", "--office", "-"}, kOffice);
  EXPECT_EQ(input.code, 1);
  EXPECT_NE(input.out.find("\ny.html:1:1: error"), std::string::npos) << input.out;
}

TEST_F(CheckCommand, AProblemInThePagesOwnTextHasNoControl) {
  Write("x.html", "<p>\nä #customer.Emial#");
  Write("office.json", kOffice);
  EXPECT_EQ(
      Kvo({"check", "x.html"}).out,
      "x.html:2:3: error: There is no contact field \"Emial\". Choose one of office.json or add "
      "it there. Did you mean \"Email\"? [unknown-field]\n");
  const Json problems = Json::parse(Kvo({"check", "x.html", "--json"}).out)["problems"];
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(problems[0]["rule"], "unknown-field");
  EXPECT_EQ(problems[0]["line"], 2);
  EXPECT_EQ(problems[0]["column"], 3);
  EXPECT_EQ(problems[0]["class"], "");
  EXPECT_EQ(problems[0]["id"], "");
}

TEST_F(CheckCommand, WarningsAloneAreNotAFailure) {
  Write("x.html", "<object classid=\"progid:KVOPDesignObjects.DTCViewtracker\"></object>");
  const Result result = Kvo({"check", "x.html", "--json"});
  EXPECT_EQ(result.code, 0);
  const Json problems = Json::parse(result.out)["problems"];
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(problems[0]["rule"], "print-tag");
  EXPECT_EQ(problems[0]["severity"], "warning");
}

TEST_F(CheckCommand, ExampleNewsletterIsClean) {
  const Result result =
      Kvo({"check", std::string(KVO_SOURCE_DIR) + "/examples/newsletter/newsletter.html"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out + result.err, "");
}

TEST_F(ClassesCommand, JsonHasTheWholeContract) {
  const Json document = Json::parse(Kvo({"classes", "--json"}).out);
  EXPECT_EQ(document["library"], kLibraryName);
  ASSERT_EQ(document["classes"].size(), RegisteredControls().size());
  const Json& print = document["classes"][0];
  EXPECT_EQ(Keys(print), (std::vector<std::string>{"name", "progId", "classId", "properties",
                                                   "keys", "pages", "box"}));
  EXPECT_EQ(print["name"], "DTCPrint");
  EXPECT_EQ(print["progId"], "KVOPDesignObjects.DTCPrint");
  EXPECT_EQ(print["properties"][3], Json::parse(R"({"name": "Value", "id": 4, "type": "text"})"));
  EXPECT_EQ(print["keys"][0], Json::parse(R"({"key": "namespace", "readDefault": "kv",
      "writeDefault": "kv", "alwaysStored": false})"));
  EXPECT_EQ(print["keys"][3], Json::parse(R"({"key": "value", "readDefault": "",
      "writeDefault": null, "alwaysStored": true})"));
  EXPECT_EQ(print["pages"], Json::parse(R"(["propPrintGeneral", "propGeneralFormat"])"));
  EXPECT_EQ(print["box"]["elements"][0]["caption"], "Print");
}

std::string SourceFile(const std::string& path) { return std::string(KVO_SOURCE_DIR) + '/' + path; }

// Compares a checked-in listing with the program's current output.
void ExpectCurrent(const std::string& file, const std::string& listing, const std::string& option) {
  const std::string checkedIn = [&] {
    std::ifstream stream(SourceFile(file), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
  }();
  EXPECT_EQ(checkedIn, listing) << file
                                << " is out of date. If the change is intended, write it with"
                                << "\n  LC_ALL=C build/dev/bin/kvo classes" << option << " > "
                                << file;
}

TEST_F(ClassesCommand, PublishedContractMatchesTheCheckedInOne) {
  ExpectCurrent("tests/golden/classes.txt", Kvo({"classes"}).out, "");
}

TEST_F(ClassesCommand, DocumentationOfTheControlsIsCurrent) {
  ExpectCurrent("docs/controls.md", Kvo({"classes", "--markdown"}).out, " --markdown");
  EXPECT_EQ(Kvo({"classes", "--markdown"}).out, KvoGerman({"classes", "--markdown"}).out);
}

TEST_F(PictureCommand, DrawsEveryControlOfAPageIntoItsFile) {
  Write("x.html", PrintElement("a &lt; b", "Prüf/1") + PrintElement("y"));
  const Result result = Kvo({"picture", "x.html", "-o", "pictures"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(result.out, "pictures/1-Prüf_1.svg\npictures/2-DTCPrint.svg\n");
  const std::string svg = Read("pictures/1-Prüf_1.svg");
  EXPECT_EQ(svg.find("<svg xmlns=\"http://www.w3.org/2000/svg\""), 0U) << svg;
  EXPECT_NE(svg.find(">a &lt; b</text>"), std::string::npos) << svg;
  EXPECT_NE(svg.find("Tahoma"), std::string::npos);
  EXPECT_NE(svg.find("<rect x=\"15\" y=\"15\""), std::string::npos) << svg;
}

TEST_F(PictureCommand, DrawsAClassWithItsDesignCaptions) {
  const Result result = Kvo({"picture", "DTCPrint", "-o", "-"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_NE(result.out.find(">&lt;Value&gt;</text>"), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("font-weight=\"bold\""), std::string::npos);
}

TEST_F(PictureCommand, ContainsOnlyValidXml) {
  Write("x.html", "\xEF\xBB\xBF" +  // UTF-8, although not all of it is valid
                      PrintElement("a&#xFFFE;b&#xFFFF;c\xEF\xBF\xBE"
                                   "d\xEF\xBF\xBF"
                                   "e&#xD800;f&#x1;g\xEF\xBF\xBD\xF0\x9F\x92\x8C") +
                      PrintElement("\xEF\xBF") + PrintElement("\xEF\xBF\xBE"));
  const Result result = Kvo({"picture", "x.html", "-o", "-"});
  EXPECT_EQ(result.out.find("\xEF\xBF\xBE"), std::string::npos);
  EXPECT_EQ(result.out.find("\xEF\xBF\xBF"), std::string::npos);
  EXPECT_EQ(result.out.find("\xED\xA0"), std::string::npos);
  EXPECT_EQ(result.out.find('\x01'), std::string::npos);
  EXPECT_NE(result.out.find(">a\xEF\xBF\xBD"
                            "b\xEF\xBF\xBD"
                            "c\xEF\xBF\xBD"
                            "d\xEF\xBF\xBD"
                            "e"),
            std::string::npos)
      << result.out;
  EXPECT_NE(result.out.find("g\xEF\xBF\xBD\xF0\x9F\x92\x8C<"), std::string::npos);
}

TEST_F(PictureCommand, NamesFilesAfterTheBeginningOfLongIds) {
  std::string umlauts = "x";
  for (int i = 0; i < 300; ++i) umlauts += "ü";
  Write("x.html", PrintElement("a", std::string(300, 'i')) + PrintElement("b", umlauts) +
                      PrintElement("c", std::string(100'000, '/')) + PrintElement("d"));
  const Result result = Kvo({"picture", "x.html", "-o", "pictures"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(result.out, "pictures/1-" + std::string(100, 'i') + ".svg\npictures/2-" +
                            umlauts.substr(0, 99) + ".svg\npictures/3-" + std::string(100, '_') +
                            ".svg\npictures/4-DTCPrint.svg\n");
}

TEST_F(PictureCommand, AnUnwritablePictureDoesNotHideTheOthers) {
  Write("x.html", PrintElement("a", "a") + PrintElement("b", "b"));
  std::filesystem::create_directories(Folder() / "work/pictures/1-a.svg");
  const Result result = Kvo({"picture", "x.html", "-o", "pictures"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("1-a.svg"), std::string::npos) << result.err;
  EXPECT_EQ(result.out, "pictures/2-b.svg\n");
}

TEST_F(PictureCommand, RequiresATarget) {
  const Result result = Kvo({"picture", "DTCPrint"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("-o FOLDER"), std::string::npos) << result.err;
}

// The shortened report for one kind of problem, for a page with 30 wrong keys.

const std::string kManyProblems = [] {
  std::string page;
  for (int i = 0; i < 30; ++i)
    page += ControlElement("DTCPrint", {{"vlaue", "x"}}, "id" + std::to_string(i)) + '\n';
  return page + ControlElement("DTCPrnt", {});
}();

TEST_F(CheckCommand, ReportsTheFirstOfAKindAndTheNumberOfOthers) {
  Write("x.html", kManyProblems);
  for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
           {"check", "x.html"}, {"save", "x.html"}, {"inspect", "x.html"}}) {
    const Result result = Kvo(command);
    EXPECT_EQ(result.code, 1);
    const std::string& told = command[0] == "check" ? result.out : result.err;
    EXPECT_NE(told.find("x.html:10:62: error: DTCPrint \"id9\""), std::string::npos) << told;
    EXPECT_NE(told.find("\nx.html:11:63: error: ... and 20 more of this kind. [unknown-key]\n"
                        "x.html:31:1: error: DTCPrnt"),
              std::string::npos)
        << told;
    EXPECT_EQ(told.find("id10"), std::string::npos) << told;
  }
  EXPECT_NE(KvoGerman({"check", "x.html"}).out.find("... und 20 weitere dieser Art."),
            std::string::npos);
}

TEST_F(CheckCommand, ReportsTheSameAsJson) {
  Write("x.html", kManyProblems);
  const Json problems = Json::parse(Kvo({"check", "x.html", "--json"}).out)["problems"];
  ASSERT_EQ(problems.size(), 12U);
  EXPECT_FALSE(problems[9].contains("more"));
  EXPECT_EQ(problems[10]["more"], 20);
  EXPECT_EQ(problems[10]["rule"], "unknown-key");
  EXPECT_EQ(problems[10]["line"], 11);
  EXPECT_EQ(problems[11]["rule"], "unknown-class");
}

// One page's problems do not hide another's, and every control keeps its error.
TEST_F(CheckCommand, ReportsEachPageAndEachControl) {
  Write("x.html", kManyProblems);
  Write("y.html", kManyProblems);
  EXPECT_NE(Kvo({"check", "x.html", "y.html"}).out.find("y.html:10:62: error"), std::string::npos);
  const Json controls = Json::parse(Kvo({"inspect", "x.html", "--json"}).out)["controls"];
  ASSERT_EQ(controls.size(), 31U);
  for (const Json& control : controls)
    EXPECT_NE(control["error"]["message"], "") << control["line"];
}

}  // namespace
}  // namespace kvo::test
