#pragma once

#include <string_view>

#include "common/forms/PageField.h"

namespace kvo {

// Columns, contents of the cells, headline and addresses of a product list.
class propProdListGeneral final : public PropertyPage {
 public:
  propProdListGeneral() : PropertyPage("Allgemein", Filling::isNoChange) {}

  KVO_CONTROL(Label, lblDisplayColumns,
              .caption = "Anzahl Spalten pro Zeile:", .at = {240, 150, 1920, 240});
  // Applying throws RuntimeError 13 (or 6) unless it is a number; writes nothing then.
  KVO_FIELD(ComboBox, cboDisplayColumns, "DisplayColumns", .at = {2220, 120, 780, 300},
            .editable = true, .onClick = marksChanged);
  KVO_CONTROL(Label, lblTableWidth, .caption = "Tabellenbreite:", .at = {3120, 150, 1200, 240});
  // Deliberate: selects itself after each key and never marks the page changed.
  KVO_FIELD(TextBox, txtTableWidth, "TableWidth", .at = {4380, 120, 1140, 300},
            .onChange = SelectAllText, .onGotFocus = kNothing);
  KVO_FIELD(CheckBox, chkDisplayDesc2, "DisplayDesc2", .caption = "Beschreibung 2 anzeigen",
            .at = {240, 480, 2580, 240});
  KVO_FIELD(CheckBox, chkDisplayPrice, "DisplayPrice", .caption = "Preis einblenden",
            .at = {2880, 480, 2640, 240});
  KVO_FIELD(CheckBox, chkCacheObject, "CacheObject",
            .caption = "Objekt zwischenspeichern ( empfohlen )", .at = {240, 780, 5280, 240});
  KVO_CONTROL(Label, lblCacheInfo,
              .caption =
                  "Das Zwischenspeichern von Objekten erhöht die Geschwindigkeit der "
                  "Verarbeitung, allerdings sind in diesem Fall keine späteren "
                  "individuellen Auswertungen von z.Bsp. geklickten Links in diesem Objekt "
                  "möglich.",
              .at = {480, 1020, 5040, 780}, .wraps = true);
  KVO_CONTROL(Label, lblDisplayThumbnail,
              .caption = "Thumbnail einblenden:", .at = {240, 1890, 2520, 240});
  KVO_FIELD(ComboBox, cboDisplayThumbnail,
            Binding("DisplayThumb").Shown(KnownThumbnail).Stored(KnownThumbnail),
            .at = {2820, 1860, 2700, 300}, .onClick = marksChanged);
  KVO_FIELD(CheckBox, chkDisplayAsLink, Binding("DisplayAsLink").ReadBefore(cboDisplayThumbnail),
            .caption = "Links zu Produktdetailseiten im Shop erstellen",
            .at = {240, 2220, 5280, 240});
  KVO_FIELD(CheckBox, chkStretchBreach, Binding("StretchBreach").ReadBefore(cboDisplayThumbnail),
            .caption = "Letztes Produkt erstreckt sich bis zum Ende der Zeile",
            .at = {240, 2460, 5280, 240});
  KVO_CONTROL(Label, lblHeadline, .caption = "Überschrift:", .at = {240, 2790, 2520, 240});
  KVO_FIELD(TextBox, txtHeadline, "Headline", .at = {2820, 2760, 2700, 300});
  KVO_CONTROL(Label, lblShopHttpURL, .caption = "URL des Shops:", .at = {240, 3150, 2520, 240});
  KVO_FIELD(TextBox, txtShopHttpURL, "ShopHTTPURL", .at = {2820, 3120, 2700, 300});
  KVO_CONTROL(Label, lblImagesHTTPUrl, .caption = "Alternative URL für Bilder",
              .at = {240, 3510, 2520, 240});
  KVO_FIELD(TextBox, txtImagesHTTPUrl, "ImagesHTTPURL", .at = {2820, 3480, 2700, 300});
  KVO_CONTROL(Label, lblDefaultExtension,
              .caption = "Datei-Erweiterung:", .at = {240, 3870, 2520, 240});
  KVO_FIELD(TextBox, txtDefaultExtension, "DefaultExtension", .at = {2820, 3840, 2700, 300},
            .text = kDefaultExtension);
  KVO_CONTROL(Label, lblClickId, .caption = "Click-ID für spätere Auswertung",
              .at = {240, 4230, 2520, 240});
  KVO_FIELD(TextBox, txtClickId, "ClickId", .at = {2820, 4200, 2700, 300});

 private:
  static constexpr std::string_view kDefaultExtension = "htm";

  void Initialize() override;
  void SelectionChanged() override;
  // Any other value means left, and so does no choice.
  static std::string KnownThumbnail(std::string value);
};

}  // namespace kvo
