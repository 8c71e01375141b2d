#pragma once

#include <span>
#include <string_view>

#include "common/forms/PropertyPage.h"

namespace kvo {

// Columns, contents of the cells, headline and addresses of a product list.
class propProdListGeneral final : public PropertyPage {
 public:
  propProdListGeneral() : PropertyPage("Allgemein") {}

  KVO_CONTROL(Label, lblDisplayColumns,
              .caption = "Anzahl Spalten pro Zeile:", .at = {240, 150, 1920, 240});
  KVO_CONTROL(ComboBox, cboDisplayColumns, .at = {2220, 120, 780, 300}, .editable = true,
              .onChange = marksChangedUnlessLoading, .onClick = marksChangedUnlessLoading);
  KVO_CONTROL(Label, lblTableWidth, .caption = "Tabellenbreite:", .at = {3120, 150, 1200, 240});
  // Selects itself after each key and never marks the page changed: deliberate.
  KVO_CONTROL(TextBox, txtTableWidth, .at = {4380, 120, 1140, 300}, .onChange = SelectAllText);
  KVO_CONTROL(CheckBox, chkDisplayDesc2, .caption = "Beschreibung 2 anzeigen",
              .at = {240, 480, 2580, 240}, .onClick = marksChangedUnlessLoading);
  KVO_CONTROL(CheckBox, chkDisplayPrice, .caption = "Preis einblenden",
              .at = {2880, 480, 2640, 240}, .onClick = marksChangedUnlessLoading);
  KVO_CONTROL(CheckBox, chkCacheObject, .caption = "Objekt zwischenspeichern ( empfohlen )",
              .at = {240, 780, 5280, 240}, .onClick = marksChangedUnlessLoading);
  KVO_CONTROL(Label, lblCacheInfo,
              .caption =
                  "Das Zwischenspeichern von Objekten erhöht die Geschwindigkeit der "
                  "Verarbeitung, allerdings sind in diesem Fall keine späteren "
                  "individuellen Auswertungen von z.Bsp. geklickten Links in diesem Objekt "
                  "möglich.",
              .at = {480, 1020, 5040, 780}, .wraps = true);
  KVO_CONTROL(Label, lblDisplayThumbnail,
              .caption = "Thumbnail einblenden:", .at = {240, 1890, 2520, 240});
  KVO_CONTROL(ComboBox, cboDisplayThumbnail, .at = {2820, 1860, 2700, 300},
              .onChange = marksChangedUnlessLoading, .onClick = marksChangedUnlessLoading);
  KVO_CONTROL(CheckBox, chkDisplayAsLink,
              .caption = "Links zu Produktdetailseiten im Shop erstellen",
              .at = {240, 2220, 5280, 240}, .onClick = marksChangedUnlessLoading);
  KVO_CONTROL(CheckBox, chkStretchBreach,
              .caption = "Letztes Produkt erstreckt sich bis zum Ende der Zeile",
              .at = {240, 2460, 5280, 240}, .onClick = marksChangedUnlessLoading);
  KVO_CONTROL(Label, lblHeadline, .caption = "Überschrift:", .at = {240, 2790, 2520, 240});
  KVO_CONTROL(TextBox, txtHeadline, .at = {2820, 2760, 2700, 300},
              .onChange = marksChangedUnlessLoading, .onGotFocus = SelectAllText);
  KVO_CONTROL(Label, lblShopHttpURL, .caption = "URL des Shops:", .at = {240, 3150, 2520, 240});
  KVO_CONTROL(TextBox, txtShopHttpURL, .at = {2820, 3120, 2700, 300},
              .onChange = marksChangedUnlessLoading, .onGotFocus = SelectAllText);
  KVO_CONTROL(Label, lblImagesHTTPUrl, .caption = "Alternative URL für Bilder",
              .at = {240, 3510, 2520, 240});
  KVO_CONTROL(TextBox, txtImagesHTTPUrl, .at = {2820, 3480, 2700, 300},
              .onChange = marksChangedUnlessLoading, .onGotFocus = SelectAllText);
  KVO_CONTROL(Label, lblDefaultExtension,
              .caption = "Datei-Erweiterung:", .at = {240, 3870, 2520, 240});
  KVO_CONTROL(TextBox, txtDefaultExtension, .at = {2820, 3840, 2700, 300},
              .text = kDefaultExtension, .onChange = marksChangedUnlessLoading,
              .onGotFocus = SelectAllText);
  KVO_CONTROL(Label, lblClickId, .caption = "Click-ID für spätere Auswertung",
              .at = {240, 4230, 2520, 240});
  KVO_CONTROL(TextBox, txtClickId, .at = {2820, 4200, 2700, 300},
              .onChange = marksChangedUnlessLoading, .onGotFocus = SelectAllText);

 private:
  static constexpr std::string_view kDefaultExtension = "htm";

  void Initialize() override;
  void SelectionChanged() override;
  // RuntimeError 13 (or 6) when the columns are no number; nothing is written then.
  void ApplyChanges() override;

  struct FlagField {
    CheckBox& box;
    std::string_view property;
  };
  void Fill(std::span<const FlagField> fields) const;
  void Store(std::span<const FlagField> fields) const;

  // In the order in which they are written, the thumbnails between the two groups.
  const FlagField cellFlags_[3] = {{chkDisplayDesc2, "DisplayDesc2"},
                                   {chkDisplayPrice, "DisplayPrice"},
                                   {chkCacheObject, "CacheObject"}};
  const FlagField linkFlags_[2] = {{chkDisplayAsLink, "DisplayAsLink"},
                                   {chkStretchBreach, "StretchBreach"}};
  const TextField texts_[5] = {{txtHeadline, "Headline"},
                               {txtShopHttpURL, "ShopHTTPURL"},
                               {txtImagesHTTPUrl, "ImagesHTTPURL"},
                               {txtDefaultExtension, "DefaultExtension"},
                               {txtClickId, "ClickId"}};
};

}  // namespace kvo
