// Reads the toolbox from a file.
#include "apps/editor/ToolboxFile.h"

#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

class ToolboxFileTest : public testing::Test {
 protected:
  std::string ErrorOf(const std::string& contents) {
    try {
      ReadToolbox(contents, "/shop/toolbox.json");
      return "none";
    } catch (const office::JsonFileError& error) {
      return error.Text(Language::english);
    }
  }
  Desk desk;
};

TEST_F(ToolboxFileTest, KeepsTheOrderOfTools) {
  const auto tools = ReadToolbox(
      R"({"tools":[
        {"class":"DTCPrint","caption":"Preis","icon":"icons/preis.png",
         "bag":{"namespace":"shop","value":"#order.total#"}},
        {"class":"DTCIf","caption":{"de":"Wenn","en":"If"},"description":{"de":"d","en":"e"}}]})",
      "/shop/toolbox.json");
  ASSERT_EQ(tools.size(), 2U);
  EXPECT_EQ(tools[0].contract->name, "DTCPrint");
  EXPECT_EQ(tools[0].caption, "Preis");
  EXPECT_EQ(tools[0].icon, "/shop/icons/preis.png");
  EXPECT_EQ(tools[0].bag,
            (std::vector<MemoryBag::Entry>{{"namespace", "shop"}, {"value", "#order.total#"}}));
  EXPECT_EQ(tools[1].caption, "Wenn");
  EXPECT_EQ(tools[1].description, "d");
  EXPECT_TRUE(tools[1].bag.empty());
}

TEST_F(ToolboxFileTest, EveryMistakeIsReportedWithItsPlace) {
  const std::pair<std::string, std::string> cases[] = {
      {"", "/shop/toolbox.json:1:1: error: "},
      {"[]", "1:1: error: The file: expected is an object"},
      {"{}", "the key \"tools\" is missing"},
      {R"({"tools":[{"caption":"x"}]})", "tools[0]: the key \"class\" is missing"},
      {R"({"tools":[{"class":"DTCPrint"}]})", "tools[0]: the key \"caption\" is missing"},
      {"{\"tools\":[\n{\"class\":\"DTCPrnt\",\"caption\":\"x\"}]}",
       "2:10: error: tools[0].class: There is no class \"DTCPrnt\". Did you mean \"DTCPrint\"?"},
      {R"({"tools":[{"class":"DTCPrint","caption":"x","bag":{"valeu":"1"}}]})",
       "tools[0].bag.valeu: there is no such key. Did you mean \"value\"?"},
      {R"({"tools":[{"class":"DTCPrint","caption":"x","bag":{"value":1}}]})",
       "tools[0].bag.value: expected is a text"},
      {R"({"tools":[{"class":"DTCPrint","caption":"x","bag":{"value":"1","value":"2"}}]})",
       "tools[0].bag.value stands twice"},
      {R"({"tools":[{"class":"DTCElement","caption":"x","bag":{"opening-tag-only":"ja"}}]})",
       "tools[0].bag: the control cannot be loaded from it"},
      {R"({"tools":[{"class":"DTCPrint","caption":{"de":"x"}}]})",
       "tools[0].caption: the key \"en\" is missing"},
      {R"({"tools":[],"tolls":[]})", "tolls: there is no such key. Did you mean \"tools\"?"},
  };
  for (const auto& [contents, message] : cases)
    EXPECT_NE(ErrorOf(contents).find(message), std::string::npos) << contents << '\n'
                                                                  << ErrorOf(contents);
}

}  // namespace
}  // namespace kvo::editor
