// A new property takes one row in its control and one line in its page; everything else follows.
// Uses the programs of tests/kvo/property.
#include <nlohmann/json.hpp>

#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

class OneProperty : public Program {
 protected:
  OneProperty() { UseProgram(KVO_WITH_PROPERTY); }
};

const std::string kList = ControlElement("DTCPositionList", {{"summary", "total"}}, "liste");

TEST_F(OneProperty, IsUnknownToTheShippedProgram) {
  UseProgram(KVO_PROGRAM);
  EXPECT_EQ(Kvo({"publish", "-", "-o", "-"}, kList).code, 1);
}

TEST_F(OneProperty, IsStoredAndEmitted) {
  const Result published = Kvo({"publish", "-", "-o", "-"}, kList);
  EXPECT_EQ(published.out, "<kv:print order-id=\"#order.orderid#\" summary=\"total\"/>")
      << published.err;
  EXPECT_EQ(Kvo({"new", "DTCPositionList", "Summary=x"}).out,
            ControlElement("DTCPositionList", {{"summary", "x"}}) + '\n');
}

TEST_F(OneProperty, IsListed) {
  const auto listing = nlohmann::json::parse(Kvo({"classes", "--json"}).out);
  for (const auto& listed : listing["classes"]) {
    if (listed["name"] != "DTCPositionList") continue;
    const nlohmann::json property = {{"name", "Summary"}, {"id", 14}, {"type", "text"}};
    EXPECT_EQ(listed["properties"].back(), property);
    EXPECT_EQ(listed["keys"].back()["key"], "summary");
    return;
  }
  FAIL() << "the class is not listed";
}

TEST_F(OneProperty, IsEditedOnThePage) {
  Write("seite.html", kList);
  Write("gespraech.txt", R"(open liste
expect suiDesign/summary caption "Zusammenfassung"
expect suiDesign/summary value "total"
row suiDesign summary
type "alles"
ok
expect bag liste summary "alles"
)");
  const Result played = Kvo({"script", "seite.html", "gespraech.txt"});
  EXPECT_EQ(played.code, 0) << played.out << played.err;
}

TEST_F(OneProperty, IsInTheTypeLibrary) {
  UseProgram(KVO_COM_SOURCES_WITH_PROPERTY);
  const std::string library = Kvo({"KVOPDesignObjects"}).out;
  EXPECT_NE(library.find("[id(14), propput, helpstring(\"Gespeichert unter 'summary', gelesen mit "
                         "der Vorgabe ''\")] void Summary([in] BSTR sNewSummary);"),
            std::string::npos)
      << library;
}

}  // namespace
}  // namespace kvo::test
