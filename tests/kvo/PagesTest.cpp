#include <filesystem>
#include <nlohmann/json.hpp>

#include "host/registration/classes.h"
#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

using Json = nlohmann::ordered_json;
using PagesCommand = Program;
using ScriptCommand = Program;

TEST_F(PagesCommand, DrawsEveryPageOfEveryClass) {
  for (const RegisteredControl& control : RegisteredControls()) {
    const std::string name(control.contract().name);
    const Result result = Kvo({"pages", name, "-o", name});
    EXPECT_EQ(result.code, 0) << result.err;
    for (const std::string_view page : control.contract().pages) {
      const std::string file = name + "/" + std::string(page) + ".svg";
      EXPECT_NE(result.out.find(file), std::string::npos) << result.out;
      EXPECT_TRUE(Read(file).starts_with("<svg")) << file;
    }
  }
  EXPECT_NE(Read("DTCIf/frmExpressionBuilder.svg").find("Ausdruck-Assistent"), std::string::npos);
}

TEST_F(PagesCommand, UnknownClassIsWrongUse) {
  EXPECT_EQ(Kvo({"pages", "DTCPrnt", "-o", "x"}).code, 2);
}

TEST_F(ScriptCommand, PrintsBagAndPageStateAndKeepsThePage) {
  const std::string page = PrintElement("alt", "Preis");
  Write("x.html", page);
  Write("s.txt",
        "open Preis\nfocus txtValue\npress select-all\ntype \"a&b\"\nexpect page changed yes\n"
        "apply\n");
  const Result result = Kvo({"script", "x.html", "s.txt"});
  EXPECT_EQ(result.code, 0) << result.out << result.err;
  const Json document = Json::parse(result.out);
  EXPECT_TRUE(document["failure"].is_null());
  EXPECT_EQ(document["frame"]["open"], true);
  EXPECT_EQ(document["frame"]["apply"], false);
  EXPECT_EQ(document["pages"][0]["class"], "propPrintGeneral");
  EXPECT_EQ(document["pages"][0]["changed"], false);
  bool found = false;
  for (const Json& control : document["pages"][0]["controls"])
    if (control["name"] == "txtValue") {
      found = true;
      EXPECT_EQ(control["text"], "a&b");
      EXPECT_EQ(control["enabled"], true);
    }
  EXPECT_TRUE(found);
  EXPECT_EQ(document["controls"][0]["bag"], Json::parse(R"([["value", "a&b"], ["format", ""]])"));
  EXPECT_EQ(document["controls"][0]["runtimeText"], "<kv:print value=\"a&amp;b\"/>");
  EXPECT_EQ(Read("x.html"), page);
}

TEST_F(ScriptCommand, StopsAtTheFirstLineThatFails) {
  Write("x.html", PrintElement("alt", "Preis"));
  Write("s.txt", "open Preis\nexpect txtValue text \"neu\"\n");
  const Result result = Kvo({"script", "x.html", "s.txt"});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(Json::parse(result.out)["failure"]["line"], 2);
}

TEST_F(ScriptCommand, StopsWhenItActsOnTheFrameUnderADialog) {
  Write("x.html", ControlElement("DTCIf", {{"test", "%a%"}}, "Wenn"));
  for (const std::string command :
       {"open Wenn", "page propPrintGeneral", "select Wenn", "apply", "ok", "cancel", "reopen"}) {
    Write("s.txt", "open Wenn\nclick cmdShowExpressionBuilder\n" + command + "\nclick cmdOk\n");
    const Result result = Kvo({"script", "x.html", "s.txt"});
    EXPECT_EQ(result.code, 1) << command << result.err;
    const Json document = Json::parse(result.out);
    EXPECT_EQ(document["failure"]["line"], 3) << command;
    EXPECT_EQ(document["pages"][0]["class"], "propIfGeneral") << command;
    EXPECT_EQ(document["controls"][0]["bag"][0], Json::parse(R"(["test", "%a%"])")) << command;
  }
}

}  // namespace
}  // namespace kvo::test
