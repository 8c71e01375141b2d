#include "pages/propPrintGeneral.h"

#include "controls/DTCPrint.h"
#include "tests/pages/PageTest.h"

namespace kvo {
namespace {

using PrintGeneralPage = PageTest<propPrintGeneral>;

TEST_F(PrintGeneralPage, MatchesItsDesign) {
  EXPECT_EQ(page.Caption(), "Allgemein");
  EXPECT_EQ(page.FormSize().width, 5775);
  EXPECT_EQ(page.FormSize().height, 4560);
  EXPECT_EQ(page.lblPrintInfo.Caption(), "KVML Ausdruck zur Ausgabe");
  EXPECT_EQ(page.lblPrintInfo.At(), (Rect{240, 240, 5175, 255}));
  EXPECT_EQ(page.txtValue.At(), (Rect{240, 480, 5295, 300}));
  EXPECT_FALSE(page.txtValue.MultiLine());
}

TEST_F(PrintGeneralPage, ShowsTheValueOfTheFirstSelectedControl) {
  const auto second = std::make_shared<PropertyObject>(Properties{{"Value", "zwei"}});
  object = std::make_shared<PropertyObject>(Properties{{"Value", "eins"}});
  page.Select({object, second});
  EXPECT_EQ(page.txtValue.Text(), "eins");
}

TEST_F(PrintGeneralPage, EachKeyMarksThePageChanged) {
  Open({{"Value", ""}});
  EXPECT_FALSE(page.Changed());
  user.FocusByKeyboard(page.txtValue);
  EXPECT_FALSE(page.Changed());
  user.Type("x");
  EXPECT_TRUE(page.Changed());
}

TEST_F(PrintGeneralPage, FillingWithANewTextMarksThePageChanged) {
  Open({{"Value", "a"}});
  EXPECT_TRUE(page.Changed());
  page.Apply();
  page.Select({object});
  EXPECT_FALSE(page.Changed());
}

TEST_F(PrintGeneralPage, ApplyWritesTheTypedTextToTheFirstControlOnly) {
  object = std::make_shared<PropertyObject>(Properties{{"Value", "alt"}});
  const auto second = std::make_shared<PropertyObject>(Properties{{"Value", "zwei"}});
  page.Select({object, second});
  user.FocusByKeyboard(page.txtValue);
  user.Press(Key::selectAll);
  user.Type("  a & \"b\" ");
  page.Apply();
  EXPECT_EQ((*object)["Value"], Variant("  a & \"b\" "));
  EXPECT_EQ((*second)["Value"], Variant("zwei"));
  EXPECT_FALSE(page.Changed());
}

TEST_F(PrintGeneralPage, ATextThatALineCannotShowIsKeptUnchanged) {
  Open({{"Value", std::string("a\r\nb\nc\0d", 8)}});
  page.Apply();
  EXPECT_EQ((*object)["Value"], Variant(std::string("a\r\nb\nc\0d", 8)));
}

TEST_F(PrintGeneralPage, EditsThePrintControl) {
  const auto control = std::make_shared<DTCPrint>();
  MemoryBag bag;
  control->ReadProperties(bag);
  page.Select({control});
  user.FocusByKeyboard(page.txtValue);
  user.Type("a&b");
  page.Apply();
  EXPECT_EQ(control->GetRuntimeText(), R"(<kv:print value="a&amp;b"/>)");
}

TEST_F(PrintGeneralPage, AnObjectWithoutAValueIsAnError) {
  EXPECT_EQ(ErrorOf([&] { Open({{"Wert", ""}}); }), 438);
}

}  // namespace
}  // namespace kvo
