#include "controls/DTCProductList.h"
#include "pages/propProdListGeneral.h"
#include "tests/pages/PageTest.h"

namespace kvo {
namespace {

class ProductListGeneralPage : public PageTest<propProdListGeneral> {
 protected:
  static Properties Values() {
    return {{"DisplayColumns", 2},
            {"TableWidth", "500"},
            {"DisplayDesc2", true},
            {"DisplayPrice", false},
            {"CacheObject", true},
            {"DisplayThumb", "top"},
            {"DisplayAsLink", true},
            {"StretchBreach", false},
            {"Headline", "Neu"},
            {"ShopHTTPURL", "http://s"},
            {"ImagesHTTPURL", "http://i"},
            {"DefaultExtension", "html"},
            {"ClickId", "c1"}};
  }
  void OpenWith(const std::string& property, Variant value) {
    Properties values = Values();
    values[property] = std::move(value);
    Open(std::move(values));
  }
};

TEST_F(ProductListGeneralPage, MatchesItsDesign) {
  EXPECT_EQ(page.Caption(), "Allgemein");
  const std::pair<const Label*, std::string_view> labels[] = {
      {&page.lblDisplayColumns, "Anzahl Spalten pro Zeile:"},
      {&page.lblTableWidth, "Tabellenbreite:"},
      {&page.lblCacheInfo,
       "Das Zwischenspeichern von Objekten erhöht die Geschwindigkeit der Verarbeitung, allerdings "
       "sind in diesem Fall keine späteren individuellen Auswertungen von z.Bsp. geklickten Links "
       "in diesem Objekt möglich."},
      {&page.lblDisplayThumbnail, "Thumbnail einblenden:"},
      {&page.lblHeadline, "Überschrift:"},
      {&page.lblShopHttpURL, "URL des Shops:"},
      {&page.lblImagesHTTPUrl, "Alternative URL für Bilder"},
      {&page.lblDefaultExtension, "Datei-Erweiterung:"},
      {&page.lblClickId, "Click-ID für spätere Auswertung"},
  };
  for (const auto& [label, caption] : labels) EXPECT_EQ(label->Caption(), caption);
  const std::pair<const CheckBox*, std::string_view> boxes[] = {
      {&page.chkDisplayDesc2, "Beschreibung 2 anzeigen"},
      {&page.chkDisplayPrice, "Preis einblenden"},
      {&page.chkCacheObject, "Objekt zwischenspeichern ( empfohlen )"},
      {&page.chkDisplayAsLink, "Links zu Produktdetailseiten im Shop erstellen"},
      {&page.chkStretchBreach, "Letztes Produkt erstreckt sich bis zum Ende der Zeile"},
  };
  for (const auto& [box, caption] : boxes) EXPECT_EQ(box->Caption(), caption);
  EXPECT_EQ(page.txtDefaultExtension.Text(), "htm");
}

TEST_F(ProductListGeneralPage, OffersOneToFourColumnsAndFivePlacements) {
  Open(Values());
  std::vector<std::string> columns;
  for (const auto& row : page.cboDisplayColumns.Rows()) columns.push_back(row.text);
  EXPECT_EQ(columns, (std::vector<std::string>{"1", "2", "3", "4"}));
  std::vector<std::string> thumbs;
  for (const auto& row : page.cboDisplayThumbnail.Rows()) thumbs.push_back(row.text);
  EXPECT_EQ(thumbs, (std::vector<std::string>{"Nein", "Linksbündig", "Rechtsbündig", "Obenbündig",
                                              "Untenbündig"}));
}

TEST_F(ProductListGeneralPage, ShowsThePropertiesWithoutBeingMarkedChanged) {
  Open(Values());
  EXPECT_FALSE(page.Changed());
  EXPECT_EQ(page.cboDisplayColumns.Text(), "2");
  EXPECT_EQ(page.txtTableWidth.Text(), "500");
  EXPECT_TRUE(page.chkDisplayDesc2.Value());
  EXPECT_FALSE(page.chkDisplayPrice.Value());
  EXPECT_TRUE(page.chkCacheObject.Value());
  EXPECT_EQ(page.cboDisplayThumbnail.ListIndex(), 3);
  EXPECT_TRUE(page.chkDisplayAsLink.Value());
  EXPECT_FALSE(page.chkStretchBreach.Value());
  EXPECT_EQ(page.txtHeadline.Text(), "Neu");
  EXPECT_EQ(page.txtShopHttpURL.Text(), "http://s");
  EXPECT_EQ(page.txtImagesHTTPUrl.Text(), "http://i");
  EXPECT_EQ(page.txtDefaultExtension.Text(), "html");
  EXPECT_EQ(page.txtClickId.Text(), "c1");
}

TEST_F(ProductListGeneralPage, WritesEverythingBackInOrder) {
  Open(Values());
  page.Apply();
  EXPECT_EQ(object->written,
            (std::vector<std::string>{"DisplayColumns", "TableWidth", "DisplayDesc2",
                                      "DisplayPrice", "CacheObject", "DisplayThumb",
                                      "DisplayAsLink", "StretchBreach", "Headline", "ShopHTTPURL",
                                      "ImagesHTTPURL", "DefaultExtension", "ClickId"}));
  for (const auto& [name, value] : Values())
    EXPECT_EQ(ToText((*object)[name]), ToText(value)) << name;
}

TEST_F(ProductListGeneralPage, EveryPlacementIsShownAndWrittenBack) {
  const char* values[] = {"no", "left", "right", "top", "bottom"};
  for (int index = 0; index < 5; ++index) {
    OpenWith("DisplayThumb", values[index]);
    EXPECT_EQ(page.cboDisplayThumbnail.ListIndex(), index);
    page.Apply();
    EXPECT_EQ((*object)["DisplayThumb"], Variant(values[index]));
  }
}

TEST_F(ProductListGeneralPage, AnyOtherPlacementLoadsAndIsStoredAsLeft) {
  for (const char* odd : {"Left", "", "unten"}) {
    OpenWith("DisplayThumb", odd);
    EXPECT_EQ(page.cboDisplayThumbnail.Text(), "Linksbündig");
    page.Apply();
    EXPECT_EQ((*object)["DisplayThumb"], Variant("left"));
  }
}

TEST_F(ProductListGeneralPage, AnEmptyExtensionIsShownAndStoredAsHtm) {
  OpenWith("DefaultExtension", "");
  EXPECT_EQ(page.txtDefaultExtension.Text(), "htm");
  EXPECT_FALSE(page.Changed());
  page.Apply();
  EXPECT_EQ((*object)["DefaultExtension"], Variant("htm"));
}

TEST_F(ProductListGeneralPage, TheTableWidthSelectsItsTextAfterEachKeyAndNeverMarksThePage) {
  OpenWith("TableWidth", "");
  user.FocusByKeyboard(page.txtTableWidth);
  user.Type("5000");
  EXPECT_EQ(page.txtTableWidth.Text(), "0");
  EXPECT_EQ(page.txtTableWidth.SelLength(), 1U);
  EXPECT_FALSE(page.Changed());
}

TEST_F(ProductListGeneralPage, TheTableWidthHasNoFocusHandler) {
  Open(Values());
  user.ClickInto(page.txtTableWidth, 1);
  user.FocusByKeyboard(page.txtClickId);
  user.FocusByKeyboard(page.txtTableWidth);
  EXPECT_EQ(page.txtTableWidth.SelLength(), 0U);
}

TEST_F(ProductListGeneralPage, ATypedWidthIsWrittenWhenSomethingElseMarksThePage) {
  Open(Values());
  user.FocusByKeyboard(page.txtTableWidth);
  user.Press(Key::selectAll);
  user.Type("7");
  user.Click(page.chkDisplayPrice);
  EXPECT_TRUE(page.Changed());
  page.Apply();
  EXPECT_EQ((*object)["TableWidth"], Variant("7"));
}

TEST_F(ProductListGeneralPage, EveryOtherInputMarksThePageChanged) {
  const auto expectMarked = [&](const char* what) {
    EXPECT_TRUE(page.Changed()) << what;
    page.Apply();
  };
  Open(Values());
  user.Choose(page.cboDisplayColumns, "4");
  expectMarked("columns chosen");
  user.FocusByKeyboard(page.cboDisplayColumns);
  user.Type("3");
  expectMarked("columns typed");
  user.Choose(page.cboDisplayThumbnail, "Nein");
  expectMarked("thumbnail");
  for (CheckBox* box : {&page.chkDisplayDesc2, &page.chkDisplayPrice, &page.chkCacheObject,
                        &page.chkDisplayAsLink, &page.chkStretchBreach}) {
    user.Click(*box);
    expectMarked(box->Name().data());
  }
  for (TextBox* box : {&page.txtClickId, &page.txtDefaultExtension, &page.txtHeadline,
                       &page.txtImagesHTTPUrl, &page.txtShopHttpURL}) {
    user.FocusByKeyboard(*box);
    EXPECT_EQ(box->SelLength(), CharacterCount(box->Text())) << box->Name();
    user.Type("z");
    EXPECT_EQ(box->Text(), "z");
    expectMarked(box->Name().data());
  }
}

TEST_F(ProductListGeneralPage, AClickIntoABoxKeepsTheCaret) {
  Open(Values());
  user.ClickInto(page.txtHeadline, 1);
  user.Type("X");
  EXPECT_EQ(page.txtHeadline.Text(), "NXeu");
}

TEST_F(ProductListGeneralPage, ACountBeyondTheListIsStored) {
  const auto control = std::make_shared<DTCProductList>();
  MemoryBag bag;
  control->ReadProperties(bag);
  page.Select({control});
  user.FocusByKeyboard(page.cboDisplayColumns);
  user.Type("5");
  page.Apply();
  EXPECT_EQ(control->DisplayColumns(), 5);
}

TEST_F(ProductListGeneralPage, AnInvalidColumnCountMakesApplyFailAndWritesNothing) {
  const auto control = std::make_shared<DTCProductList>();
  MemoryBag bag;
  control->ReadProperties(bag);
  page.Select({control});
  user.FocusByKeyboard(page.cboDisplayColumns);
  user.Type("viele");
  user.FocusByKeyboard(page.txtHeadline);
  user.Type("Neu");
  EXPECT_EQ(ErrorOf([&] { page.Apply(); }), 13);
  EXPECT_TRUE(page.Changed());
  EXPECT_EQ(control->DisplayColumns(), 1);
  EXPECT_EQ(control->Headline(), "");
}

}  // namespace
}  // namespace kvo
