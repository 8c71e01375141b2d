#include "controls/DTCPositionList.h"
#include "controls/DTCProductList.h"
#include "pages/propPosListDesign.h"
#include "pages/propProdListDesign.h"
#include "tests/pages/PageTest.h"

namespace kvo {
namespace {

// Returns "kind caption key" of each row.
std::vector<std::string> RowsOf(const PropertyGrid& grid) {
  std::vector<std::string> rows;
  for (const auto& row : grid.Items()) {
    const char* kind = row->Kind() == ItemKind::category ? "#"
                       : row->Kind() == ItemKind::list   ? "list"
                       : row->Kind() == ItemKind::color  ? "color"
                                                         : "text";
    rows.push_back(std::string(kind) + " " + row->Caption() + "|" + row->Key());
  }
  return rows;
}

std::vector<std::string> ChoicesOf(const PropertyGridItem& row) {
  std::vector<std::string> choices;
  for (const auto& choice : row.Choices())
    choices.push_back(choice->Caption() + "=" + ToText(choice->Value()));
  return choices;
}

using Texts = std::vector<std::string>;

class ProductListDesignPage : public PageTest<propProdListDesign> {
 protected:
  static Properties Values() {
    return {{"FontFamily", ""},   {"FontSize", "12pt"},  {"Border", "0"},
            {"TableBgColor", ""}, {"HeaderBgColor", ""}, {"HeaderCSSStyle", ""}};
  }
  PropertyGridItem& Row(std::string_view key) { return page.suiDesign.Item(key); }
  // Opens the colour dialog on a row containing `current`; returns the colour that it opened with.
  ColorNumber Pick(std::string_view key, const std::string& current,
                   std::optional<ColorNumber> answer) {
    Row(key).Value(current);
    platform.colorAnswers = {answer};
    user.ClickButton(Row(key));
    return platform.colorPresets.back();
  }
};

TEST_F(ProductListDesignPage, HasTheRowsOfItsTemplate) {
  Open(Values());
  EXPECT_EQ(page.Caption(), "Design");
  EXPECT_EQ(
      RowsOf(page.suiDesign),
      (Texts{"# Allgemein|", "list Schriftarten|font-family", "list Schriftgrösse (Pt)|font-size",
             "list Rahmen (Px)|border", "color Hintergundfarbe|table-bgcolor",
             "text CSS Angaben|table-css-style", "# Kopfzeile|",
             "color Hintergrundfarbe|header-bgcolor", "text CSS Angaben|header-css-style",
             "list Text fettgedruckt|header-font-bold", "# Körper|",
             "text Link CSS Angaben|link-css-style", "list Link fettgedruckt|link-font-bold"}));
}

TEST_F(ProductListDesignPage, OffersElevenBordersAndSizesAndSixFonts) {
  Open(Values());
  Texts borders;
  Texts sizes;
  for (int n = 0; n <= 10; ++n) {
    borders.push_back(std::to_string(n) + " Pixel=" + std::to_string(n));
    sizes.push_back(std::to_string(n + 8) + " Punkte=" + std::to_string(n + 8) + "pt");
  }
  EXPECT_EQ(ChoicesOf(Row("border")), borders);
  EXPECT_EQ(ChoicesOf(Row("font-size")), sizes);
  const Texts fonts = ChoicesOf(Row("font-family"));
  ASSERT_EQ(fonts.size(), 6U);
  EXPECT_TRUE(fonts[0].starts_with("Arial, Helvetica, sans-serif="));
  EXPECT_TRUE(fonts[5].starts_with("Tahoma, Arial, Helvetica, sans-serif="));
  EXPECT_EQ(ChoicesOf(Row("header-font-bold")), (Texts{"Ja=1", "Nein=0"}));
  EXPECT_EQ(ChoicesOf(Row("link-font-bold")), (Texts{"Ja=1", "Nein=0"}));
}

TEST_F(ProductListDesignPage, AStoredSizeIsLoadedAndStoredUnchanged) {
  Open(Values());
  EXPECT_EQ(Row("font-size").Value(), Variant("12pt"));
  page.Apply();
  EXPECT_EQ((*object)["FontSize"], Variant("12pt"));
}

TEST_F(ProductListDesignPage, AChosenSizeStoresItsValue) {
  Open(Values());
  user.Choose(Row("font-size"), "12 Punkte");
  EXPECT_EQ(Row("font-size").Value(), Variant("12 Punkte"));
  page.Apply();
  EXPECT_EQ((*object)["FontSize"], Variant("12pt"));
}

TEST_F(ProductListDesignPage, AChosenBorderAppliesAsANumberAndATypedOneAsText) {
  Open(Values());
  user.Choose(Row("border"), "2 Pixel");
  page.Apply();
  EXPECT_EQ((*object)["Border"], Variant(2));
  user.SelectItem(Row("border"));
  user.Type("2");
  page.Apply();
  EXPECT_EQ((*object)["Border"], Variant("2"));
}

TEST_F(ProductListDesignPage, WritesItsSixPropertiesInOrder) {
  Open(Values());
  page.Apply();
  EXPECT_EQ(object->written, (Texts{"FontFamily", "FontSize", "Border", "TableBgColor",
                                    "HeaderBgColor", "HeaderCSSStyle"}));
}

TEST_F(ProductListDesignPage, RowsWithoutAPropertyStartEmptyAndNeverReachTheControl) {
  const auto control = std::make_shared<DTCProductList>();
  MemoryBag bag;
  control->ReadProperties(bag);
  page.Select({control});
  for (const char* key :
       {"table-css-style", "header-font-bold", "link-css-style", "link-font-bold"}) {
    EXPECT_TRUE(Row(key).Value().IsEmpty()) << key;
    Row(key).Value("etwas");
  }
  const std::string before = control->GetRuntimeText();
  page.Apply();
  EXPECT_EQ(control->GetRuntimeText(), before);
}

TEST_F(ProductListDesignPage, EditingARowMarksThePageChanged) {
  Open(Values());
  page.Apply();
  user.SelectItem(Row("table-css-style"));
  EXPECT_FALSE(page.Changed());
  user.Type("x");
  EXPECT_TRUE(page.Changed());
}

TEST_F(ProductListDesignPage, FillingMarksThePageChanged) {
  Open(Values());
  EXPECT_TRUE(page.Changed());
}

TEST_F(ProductListDesignPage, TheColourDialogOpensWithTheRowsColour) {
  Open(Values());
  EXPECT_EQ(Pick("table-bgcolor", "#ff8000", 0x0000FF), 0x0080FF);
  EXPECT_EQ(Row("table-bgcolor").Value(), Variant("#FF0000"));
  EXPECT_EQ(Pick("header-bgcolor", "rgb(300,0,0)", 0xFF0000), 0x0000FF);
  EXPECT_EQ(Row("header-bgcolor").Value(), Variant("#0000FF"));
}

TEST_F(ProductListDesignPage, AnUnreadableColourOpensTheDialogWithWhite) {
  Open(Values());
  EXPECT_EQ(Pick("table-bgcolor", "red", std::nullopt), 0xFFFFFF);
  EXPECT_EQ(Row("table-bgcolor").Value(), Variant("#FFFFFF"));
}

TEST_F(ProductListDesignPage, CancellingTheColourDialogCountsAsAChoice) {
  Open(Values());
  EXPECT_EQ(Pick("table-bgcolor", "rgb(1,2,3)", std::nullopt), 0x030201);
  EXPECT_EQ(Row("table-bgcolor").Value(), Variant("#010203"));
}

TEST_F(ProductListDesignPage, AnEmptyRowOpensTheDialogWithItsLastColourInitiallyBlack) {
  Open(Values());
  EXPECT_EQ(Pick("table-bgcolor", "", std::nullopt), 0);
  EXPECT_EQ(Row("table-bgcolor").Value(), Variant("#000000"));
  EXPECT_EQ(Pick("table-bgcolor", "", 0x00FF00), 0);
  EXPECT_EQ(Pick("header-bgcolor", "", std::nullopt), 0x00FF00);
  EXPECT_EQ(Row("header-bgcolor").Value(), Variant("#00FF00"));
}

class PositionListDesignPage : public PageTest<propPosListDesign> {
 protected:
  static Properties Values() {
    return {{"TableBorder", "0"},     {"TableCellSpacing", "1"}, {"TableCellPadding", "3"},
            {"TableBackground", ""},  {"HeaderBackground", ""},  {"HeaderCSSStyle", ""},
            {"TableCssStyle", "css"}, {"BodyBackground", "rot"}, {"BodyCssStyle", "css"}};
  }
  PropertyGridItem& Row(std::string_view key) { return page.suiDesign.Item(key); }
};

TEST_F(PositionListDesignPage, HasTheRowsOfItsTemplate) {
  Open(Values());
  EXPECT_EQ(page.Caption(), "Design");
  EXPECT_EQ(RowsOf(page.suiDesign),
            (Texts{"# Allgemein|cellspacing", "list Zellenabstand (Px)|table-cellspacing",
                   "list Textabstand (Px)|table-cellpadding", "list Rahmen (Px)|table-border",
                   "color Hintergrundfarbe|table-bgcolor", "text CSS Angaben|table-css-style",
                   "# Kopfzeile|", "color Hintergrundfarbe|header-bgcolor",
                   "text CSS Angaben|header-css-style", "# Körper|",
                   "color Hintergrundfarbe|body-bgcolor", "text CSS Angaben|body-css-style"}));
  Texts pixels;
  for (int n = 0; n <= 10; ++n) pixels.push_back(std::to_string(n) + " Pixel=" + std::to_string(n));
  for (const char* key : {"table-cellspacing", "table-cellpadding", "table-border"})
    EXPECT_EQ(ChoicesOf(Row(key)), pixels) << key;
}

TEST_F(PositionListDesignPage, ApplyingWithoutAChangeWritesTheValuesBack) {
  Open(Values());
  EXPECT_EQ(Row("table-border").Value(), Variant("0"));
  EXPECT_EQ(FindChoiceByValue(Row("table-border"), "0")->Caption(), "0 Pixel");
  page.Apply();
  EXPECT_EQ((*object)["TableBorder"], Variant("0"));
  EXPECT_EQ((*object)["TableCellSpacing"], Variant("1"));
  EXPECT_EQ((*object)["TableCellPadding"], Variant("3"));
}

TEST_F(PositionListDesignPage, WritesExactlySixPropertiesInOrder) {
  Open(Values());
  page.Apply();
  EXPECT_EQ(object->written, (Texts{"TableBorder", "TableCellSpacing", "TableCellPadding",
                                    "TableBackground", "HeaderBackground", "HeaderCSSStyle"}));
}

TEST_F(PositionListDesignPage, AChoiceStoresItsValue) {
  Open(Values());
  user.Choose(Row("table-cellspacing"), "3 Pixel");
  page.Apply();
  EXPECT_EQ((*object)["TableCellSpacing"], Variant("3"));
}

TEST_F(PositionListDesignPage, ATypedPixelValueIsStoredAsTyped) {
  Open(Values());
  user.SelectItem(Row("table-border"));
  user.Type("4px");
  page.Apply();
  EXPECT_EQ((*object)["TableBorder"], Variant("4px"));
}

TEST_F(PositionListDesignPage, APixelRowKeepsThePreviousControlsValueAndOverwritesTheNewOne) {
  Open(Values());
  Properties odd = Values();
  odd["TableCellSpacing"] = "12";
  Open(odd);
  EXPECT_EQ(Row("table-cellspacing").Value(), Variant("1"));
  page.Apply();
  EXPECT_EQ((*object)["TableCellSpacing"], Variant("1"));
}

TEST_F(PositionListDesignPage, OnAFreshPageSuchAValueIsOverwrittenWithEmpty) {
  Properties odd = Values();
  odd["TableCellSpacing"] = "12";
  Open(odd);
  page.Apply();
  EXPECT_EQ(ToText((*object)["TableCellSpacing"]), "");
}

TEST_F(PositionListDesignPage, TheBodysColourNeverReachesTheControl) {
  Open(Values());
  platform.colorAnswers = {0x0000FF};
  user.ClickButton(Row("body-bgcolor"));
  EXPECT_EQ(Row("body-bgcolor").Value(), Variant("#FF0000"));
  EXPECT_TRUE(page.Changed());
  page.Apply();
  EXPECT_EQ((*object)["BodyBackground"], Variant("rot"));
  EXPECT_TRUE(Row("table-css-style").Value().IsEmpty());
  EXPECT_TRUE(Row("body-css-style").Value().IsEmpty());
}

TEST_F(PositionListDesignPage, EditsThePositionList) {
  const auto control = std::make_shared<DTCPositionList>();
  MemoryBag bag;
  control->ReadProperties(bag);
  page.Select({control});
  platform.colorAnswers = {0x0000FF};
  user.ClickButton(Row("header-bgcolor"));
  page.Apply();
  EXPECT_EQ(control->GetRuntimeText(),
            R"(<kv:print order-id="#order.orderid#" header-bgcolor="#FF0000"/>)");
}

}  // namespace
}  // namespace kvo
