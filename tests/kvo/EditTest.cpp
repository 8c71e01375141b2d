#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

using NewCommand = Program;
using SetCommand = Program;

TEST_F(NewCommand, PrintsAnElementWhoseRuntimeTextPublishes) {
  const Result element = Kvo({"new", "DTCPrint", "Value=a&b", "Format=#,##0.00"});
  EXPECT_EQ(element.code, 0);
  EXPECT_EQ(element.err, "");
  const Result published = Kvo({"publish", "-"}, element.out);
  EXPECT_EQ(published.code, 0);
  EXPECT_EQ(published.out, "<kv:print value=\"a&amp;b\" format=\"#,##0.00\"/>\n");
}

TEST_F(NewCommand, StoresTheKeysThatAreAlwaysStored) {
  EXPECT_EQ(Kvo({"new", "DTCPrint"}).out,
            "<object classid=\"progid:KVOPDesignObjects.DTCPrint\">"
            "<param name=\"value\" value=\"\"><param name=\"format\" value=\"\"></object>\n");
}

TEST_F(NewCommand, WritesTheId) {
  const Result result = Kvo({"new", "DTCPrint", "--id", "Preis"});
  EXPECT_NE(result.out.find(" id=\"Preis\""), std::string::npos) << result.out;
}

TEST_F(NewCommand, NamesIgnoreCase) {
  EXPECT_EQ(Kvo({"new", "dtcprint", "VALUE=x"}).out, Kvo({"new", "DTCPrint", "Value=x"}).out);
}

TEST_F(NewCommand, ValueIsEverythingAfterTheFirstEqualsSign) {
  const Result element = Kvo({"new", "DTCPrint", "Value=a=\"b\"\r\n--<ä>"});
  EXPECT_EQ(Kvo({"publish", "-"}, element.out).out, "<kv:print value=\"a=\"b\"\r\n--<ä>\"/>\n");
}

TEST_F(NewCommand, UnknownPropertyIsWrongUseWithASuggestion) {
  const Result result = Kvo({"new", "DTCPrint", "Valeu=x"});
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_NE(result.err.find("DTCPrint has no property \"Valeu\". Did you mean \"Value\"?"),
            std::string::npos)
      << result.err;
  EXPECT_NE(KvoGerman({"new", "DTCPrint", "Valeu=x"}).err.find("Meinten Sie „Value“?"),
            std::string::npos);
}

TEST_F(NewCommand, UnknownClassIsWrongUseWithASuggestion) {
  const Result result = Kvo({"new", "DTCPrnt"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("There is no class \"DTCPrnt\". Did you mean \"DTCPrint\"?"),
            std::string::npos)
      << result.err;
}

TEST_F(NewCommand, WordWithoutEqualsSignIsWrongUse) {
  const Result result = Kvo({"new", "DTCPrint", "Value"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("NAME=VALUE is expected"), std::string::npos) << result.err;
}

TEST_F(NewCommand, RefusedValueNamesPropertyAndReason) {
  const Result result = Kvo({"new", "DTCProductList", "DisplayColumns=viele"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("DTCProductList.DisplayColumns refuses \"viele\" (Type mismatch"),
            std::string::npos)
      << result.err;
  EXPECT_NE(result.err.find("a whole number"), std::string::npos) << result.err;
}

TEST_F(NewCommand, ObjectPropertyCannotBeSet) {
  const Result result = Kvo({"new", "DTCContact", "Office=x"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("DTCContact.Office is an object"), std::string::npos) << result.err;
}

TEST_F(SetCommand, ChangesOneControlAndSavesThePage) {
  Write("x.html", "<p>" + PrintElement("a", "A") + PrintElement("b", "B") + "</p>\r\n");
  const Result result = Kvo({"set", "x.html", "B", "Value=c", "Format=dd.mm.yyyy"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(Kvo({"publish", "x.html", "-o", "-"}).out,
            "<p><kv:print value=\"a\"/><kv:print value=\"c\" format=\"dd.mm.yyyy\"/></p>\r\n");
  EXPECT_EQ(Files(), std::vector<std::string>{"x.html"});
}

TEST_F(SetCommand, PagesAndIdsMayHaveTheNamesOfCommands) {
  Write("check", PrintElement("old", "script"));
  const Result result = Kvo({"set", "check", "script", "Value=new"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_NE(Read("check").find("<kv:print value=\"new\"/>"), std::string::npos) << Read("check");
  EXPECT_EQ(Kvo({"check", "check", "check"}).code, 0);
}

TEST_F(SetCommand, OutputOptionWritesElsewhere) {
  const std::string page = PrintElement("a", "A");
  Write("x.html", page);
  EXPECT_EQ(Kvo({"set", "x.html", "A", "Value=c", "-o", "y.html"}).code, 0);
  EXPECT_EQ(Read("x.html"), page);
  EXPECT_NE(Read("y.html").find("<kv:print value=\"c\"/>"), std::string::npos);
}

TEST_F(SetCommand, UnknownIdIsWrongUseWithASuggestion) {
  const std::string page = PrintElement("a", "Preis");
  Write("x.html", page);
  const Result result = Kvo({"set", "x.html", "Pries", "Value=c"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("no control with the id \"Pries\". Did you mean \"Preis\"?"),
            std::string::npos)
      << result.err;
  EXPECT_EQ(Read("x.html"), page);
  EXPECT_EQ(Files(), std::vector<std::string>{"x.html"});
}

TEST_F(SetCommand, DuplicateIdIsRefusedWithBothLines) {
  const std::string page = PrintElement("a", "A") + "\n\n" + PrintElement("b", "A");
  Write("x.html", page);
  const Result result = Kvo({"set", "x.html", "A", "Value=c"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("x.html:3: the id \"A\" is that of the control in line 1"),
            std::string::npos)
      << result.err;
  EXPECT_EQ(Read("x.html"), page);
}

TEST_F(SetCommand, RefusedValueKeepsThePage) {
  const std::string page = PrintElement("a", "A");
  Write("x.html", page);
  const Result result = Kvo({"set", "x.html", "A", "Value=c", "Wert=d"});
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(Read("x.html"), page);
}

}  // namespace
}  // namespace kvo::test
