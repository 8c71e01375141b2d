#include "document/page/ControlChange.h"

#include "tests/page/PageTesting.h"

namespace kvo::page {
namespace {

class ControlChangeTest : public PageTest {
 protected:
  // Returns the page after setting a property of its first control.
  std::string Changed(const std::string& text, std::string_view property, std::string_view value) {
    const Page page(text);
    const Inspection inspection = Inspect(page);
    const ControlChange change =
        ChangeControl(page, inspection.controls.at(0),
                      [&](Control& control) { control.Let(property, Variant(value)); });
    problems = change.problems;
    if (!problems.empty()) return "(not changed)";
    return Applied(text, change.edits);
  }
};

TEST_F(ControlChangeTest, OnlyTheParamOfAnElementChanges) {
  const std::string before =
      "<p>\n<object ID='a' classid='progid:KVOPDesignObjects.DTCPrint'>\n  <PARAM VALUE=alt "
      "name='value'></param>\n</object> &auml;";
  EXPECT_EQ(Changed(before, "Value", "a&\"b"),
            "<p>\n<object ID='a' classid='progid:KVOPDesignObjects.DTCPrint'>\n  <PARAM "
            "VALUE=\"a&amp;&quot;b\" name='value'></param>\n</object> &auml;");
}

TEST_F(ControlChangeTest, ANewParamFollowsThatOfTheRowBefore) {
  EXPECT_EQ(Changed(Element("\n  " + Param("value", "x") + "\n  " + Param("format", "") + "\n"),
                    "DisplayValue", "y"),
            Element("\n  " + Param("value", "x") + "\n  " + Param("display-value", "y") + "\n  " +
                    Param("format", "") + "\n"));
  EXPECT_EQ(Changed(Element(""), "Value", "x"), Element(Param("value", "x")));
}

TEST_F(ControlChangeTest, AParamThatIsNoLongerStoredGoes) {
  EXPECT_EQ(
      Changed(Element("\n " + Param("value", "x") + "\n " + Param("display-value", "y") + "\n"),
              "DisplayValue", ""),
      Element("\n " + Param("value", "x") + "\n"));
}

TEST_F(ControlChangeTest, ASavedSpanGetsItsNewText) {
  EXPECT_EQ(Changed("a" + Span(StoredPrint("x"), "<kv:print value=\"x\"/>") + "b", "Value", "y"),
            "a" + Span(StoredPrint("y"), "<kv:print value=\"y\"/>") + "b");
}

TEST_F(ControlChangeTest, ATextThatWasEditedByHandIsAProblem) {
  EXPECT_EQ(Changed("\n" + Span(StoredPrint("x"), "by hand"), "Value", "y"), "(not changed)");
  EXPECT_EQ(Listed(problems), (List{"2:1 edited-by-hand"}));
}

TEST_F(ControlChangeTest, TheSameValueIsNoEdit) {
  EXPECT_EQ(Changed(PrintElement("x"), "Value", "x"), PrintElement("x"));
}

TEST_F(ControlChangeTest, ValuesAreInThePagesEncoding) {
  const std::string meta = "<meta charset=windows-1252>";
  EXPECT_EQ(Changed(meta + PrintElement("x"), "Value", "\xC3\xA4\xE2\x98\x83"),
            meta + PrintElement("\xE4&#9731;"));
}

// Whatever a property is set to, the page then reads as that and gives the text of it.
TEST_F(ControlChangeTest, ReadsBackAsWhatWasSet) {
  for (const std::string_view value : {"", "a--b", "\"'<>&", "\r\n\t", "||x|y", "-->", "</object>"})
    for (const std::string& before :
         {PrintElement("old"), Element("<param name=value value='old'><param name=format value=1>"),
          Span(StoredPrint("old"), "<kv:print value=\"old\"/>")}) {
      const std::string after = Changed("<p>" + before + "</p>", "Value", value);
      EXPECT_TRUE(Checked(after).empty()) << after;
      EXPECT_EQ(ValuesIn(after), List{std::string(value)}) << after;
    }
}

}  // namespace
}  // namespace kvo::page
