// Draws every page and the dialog as pictures.
#include <gtest/gtest.h>

#include "host/headless/BoxPicture.h"
#include "host/headless/FormPicture.h"
#include "host/registration/classes.h"
#include "tests/pages/PageTest.h"

namespace kvo {
namespace {

class FormPictures : public testing::Test {
 protected:
  HeadlessPlatform platform;
  PlatformScope scope{platform};
};

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&')
      escaped += "&amp;";
    else if (c == '<')
      escaped += "&lt;";
    else if (c == '>')
      escaped += "&gt;";
    else
      escaped += c;
  }
  return escaped;
}

// Collects the captions that a picture must show.
class Captions {
 public:
  std::vector<std::string> shown;
  void operator()(Label& label) {
    if (!label.Wraps()) shown.push_back(label.Caption());
  }
  void operator()(CheckBox& box) { shown.emplace_back(box.Caption()); }
  void operator()(OptionButton& button) { shown.emplace_back(button.Caption()); }
  void operator()(CommandButton& button) { shown.emplace_back(button.Caption()); }
  void operator()(TabPanel& panel) { shown.emplace_back(panel.Caption()); }
  void operator()(TextBox&) {}
  void operator()(ComboBox&) {}
  void operator()(Frame&) {}
  void operator()(PictureBox&) {}
  void operator()(TabControl&) {}
  void operator()(PropertyGrid&) {}
  void operator()(Grid&) {}
  void operator()(Timer&) {}
};

bool OnOpenTab(const FormControl& control) {
  const auto* panel = dynamic_cast<const TabPanel*>(control.Parent().AsControl());
  return panel == nullptr || panel->IsReachable();
}

TEST_F(FormPictures, ShowEveryCaptionOfEveryPage) {
  for (const RegisteredPage& registered : RegisteredPages()) {
    const auto page = registered.create();
    const std::string svg = FormPicture(*page);
    EXPECT_TRUE(svg.starts_with("<svg ")) << registered.name;
    EXPECT_TRUE(svg.ends_with("</svg>\n")) << registered.name;
    for (FormControl* control : page->AllControls()) {
      if (!OnOpenTab(*control)) continue;
      Captions captions;
      WithKind(*control, captions);
      for (const std::string& caption : captions.shown)
        EXPECT_NE(svg.find('>' + Escaped(caption) + '<'), std::string::npos)
            << registered.name << ": " << caption;
    }
  }
}

TEST_F(FormPictures, TextIsEscapedAndControlCharactersShowAsBlanks) {
  const auto page = CreatePage("propPrintGeneral");
  auto& box = dynamic_cast<TextBox&>(*page->Find("txtValue"));
  box.Text("a<b>&\"c\"\r\n\x01");
  const std::string svg = FormPicture(*page);
  EXPECT_NE(svg.find("a&lt;b&gt;&amp;&quot;c&quot;   <"), std::string::npos);
}

// 8.25 points are 165 twips, 9 points are 180.
TEST_F(FormPictures, UseTahomaAt8Point25) {
  const std::string page = FormPicture(*CreatePage("propGeneralFormat"));
  EXPECT_NE(page.find("font-family=\"Tahoma\" font-size=\"165\""), std::string::npos);
  EXPECT_EQ(page.find("font-size=\"180\""), std::string::npos);
  const auto click = CreatePage("propClickGeneral");
  dynamic_cast<TextBox&>(*click->Find("txtHTMLContent")).Text("x");
  EXPECT_NE(FormPicture(*click).find("font-family=\"Courier New\" font-size=\"180\""),
            std::string::npos);
  for (const RegisteredControl& registered : RegisteredControls()) {
    const std::string box = BoxPicture({registered.contract().create()->DesignTimeBox()});
    EXPECT_NE(box.find("font-family=\"Tahoma, Verdana, sans-serif\" font-size=\"165\""),
              std::string::npos)
        << registered.contract().name;
  }
}

TEST_F(FormPictures, HiddenControlsAndClosedTabsAreNotShown) {
  const auto page = CreatePage("propIfGeneral");
  EXPECT_EQ(FormPicture(*page).find("nicht zutreffender"), std::string::npos);
  dynamic_cast<TabControl&>(*page->Find("sstOnContent")).SelectedTab(1);
  EXPECT_NE(FormPicture(*page).find("nicht zutreffender"), std::string::npos);
  page->Find("lblInfo")->Visible(false);
  EXPECT_EQ(FormPicture(*page).find("Name (optional):"), std::string::npos);
}

}  // namespace
}  // namespace kvo
