#pragma once

#include "common/frame/Control.h"

namespace kvo {

// Stands for a table of shop products. The template engine draws the table from the settings.
class DTCProductList final : public ControlOf<DTCProductList> {
 public:
  Integer DisplayColumns;
  class Width final : public Text {
   public:
    explicit Width(DTCProductList& list) : list_(list) {}
    using Text::operator();
    void operator()(std::string newWidth) {
      Text::operator()(std::move(newWidth));
      list_.Resize();
    }

   private:
    DTCProductList& list_;
  };
  Width TableWidth{*this};
  Text SelectedProducts;
  Flag DisplayDesc2;
  Flag DisplayPrice;
  Flag CacheObject;
  Text DisplayThumb;
  Flag DisplayAsLink;
  Text FontFamily;
  Text FontSize;
  Flag StretchBreach;
  Text Border;
  Text Headline;
  Text TableBgColor;
  Text HeaderBgColor;
  Text HeaderCSSStyle;
  Reference Office;
  Text ShopHTTPURL;
  Text ImagesHTTPURL;
  Text DefaultExtension;
  Text ClickId;

  // The box follows a width in pixels; with any other width it keeps its last layout inside.
  void Resize() override;

 private:
  static void EmitColumns(const PropertyRow& row, const Control& control, TagWriter& tag);
  static void EmitFontSize(const PropertyRow& row, const Control& control, TagWriter& tag);
  static void EmitHeadline(const PropertyRow& row, const Control& control, TagWriter& tag);
  static void EmitNewGuid(const PropertyRow& row, const Control& control, TagWriter& tag);
  static void LayOut(Box& box, const Control& control);

  static constexpr Emission kNewGuidLast = {EmitNewGuid, true};
  static constexpr KeyCodec kStretch = {"stretch/fill", ReadOnlyYes, WriteWord, "stretch", "fill"};

  int laidOutWidth_ = 0;  // twips, of the last width in pixels; 0 while there was none

 public:
  // clang-format off
  static constexpr PropertyRow rows[] = {
      // id property               key                  read    write          emitted             stored
      {4,   KVO(DisplayColumns),   "display-columns",   "1",    "1",           {EmitColumns}},
      {5,   KVO(TableWidth),       "table-width",       "",     "",            kIfSet},
      {6,   KVO(SelectedProducts), "selected-products", "",     "",            kIfSet,             kAsTokens},
      {21,  KVO(ShopHTTPURL),      "shop-http-url",     "",     "",            kIfSet},
      {22,  KVO(ImagesHTTPURL),    "images-http-url",   "",     "",            kIfSet},
      {7,   KVO(DisplayDesc2),     "display-desc2",     "yes",  kAlwaysStored, kUnlessDefault,     kUnlessNo},
      {8,   KVO(DisplayPrice),     "display-price",     "yes",  kAlwaysStored, kUnlessDefault,     kUnlessNo},
      {9,   KVO(CacheObject),      "in-cache",          "no",   kAlwaysStored, kNewGuidLast,       kOnlyYes},
      {10,  KVO(DisplayThumb),     "display-thumb",     "left", "left",        kUnlessDefault},
      {11,  KVO(DisplayAsLink),    "display-as-link",   "yes",  kAlwaysStored, kUnlessDefault,     kUnlessNo},
      {12,  KVO(FontFamily),       "font-family",       "",     kAlwaysStored, kIfSet},
      {13,  KVO(FontSize),         "font-size",         "",     kAlwaysStored, {EmitFontSize}},
      {14,  KVO(StretchBreach),    "breach",            "fill", kAlwaysStored, kUnlessDefault,     kStretch},
      {15,  KVO(Border),           "table-border",      "0",    "",            kIfSet},  // deliberate: an empty border comes back as "0"
      {16,  KVO(Headline),         "header-caption",    "",     "",            {EmitHeadline}},
      {17,  KVO(TableBgColor),     "table-bgcolor",     "",     "",            kIfSet},
      {18,  KVO(HeaderBgColor),    "header-bgcolor",    "",     "",            kIfSet},
      {19,  KVO(HeaderCSSStyle),   "header-css-style",  "",     "",            kIfSet},
      {23,  KVO(DefaultExtension), "default-extension", "htm",  "htm",         kIfSetUnlessDefault},
      {24,  KVO(ClickId),          "click-id",          "",     "",            kIfSet},
      {20,  KVO(Office)},
  };
  // clang-format on
  static constexpr PropertyInput inputs[] = {
      {"DisplayColumns",
       {"Spalten", "Columns"},
       {"Wie viele Produkte nebeneinander stehen", "How many products stand side by side"},
       InputKind::openList,
       choices::Columns},
      {"TableWidth",
       {"Breite", "Width"},
       {"In Pixeln oder in Prozent, etwa 600 oder 100%",
        "In pixels or per cent, such as 600 or 100%"}},
      {"SelectedProducts",
       {"Produkte", "Products"},
       {"Die Artikelnummern, mit Kommas dazwischen",
        "The product numbers, with commas between them"}},
      {"ShopHTTPURL",
       {"Shop-Adresse", "Shop address"},
       {"Womit die Adressen der Produktseiten beginnen",
        "What the addresses of the product pages begin with"}},
      {"ImagesHTTPURL",
       {"Bilder-Adresse", "Picture address"},
       {"Nur, wenn die Bilder nicht beim Shop liegen",
        "Only if the pictures are not with the shop"}},
      {"DisplayDesc2",
       {"Beschreibung 2", "Description 2"},
       {"Zeigt zu jedem Produkt auch seine zweite Beschreibung",
        "Also shows the second description of each product"}},
      {"DisplayPrice",
       {"Preis", "Price"},
       {"Zeigt den Preis jedes Produkts", "Shows the price of each product"}},
      {"CacheObject",
       {"Zwischenspeichern", "Cache"},
       {"Geht schneller, zählt aber keine einzelnen Klicks",
        "Is faster, but does not count single clicks"}},
      {"DisplayThumb",
       {"Vorschaubild", "Thumbnail"},
       {"Ob und wo das Bild des Produkts steht", "Whether and where the product's picture stands"},
       InputKind::list,
       choices::Thumbnails},
      {"DisplayAsLink",
       {"Links zum Shop", "Links to the shop"},
       {"Macht jedes Produkt zum Link auf seine Seite im Shop",
        "Makes each product a link to its page in the shop"}},
      {"FontFamily",
       {"Schriftart", "Font"},
       {"Die erste gilt; hat der Empfänger sie nicht, die nächste",
        "The first one counts; if the recipient lacks it, the next"},
       InputKind::openList,
       choices::FontFamilies},
      {"FontSize",
       {"Schriftgröße", "Font size"},
       {"In Punkt, etwa 10pt; gilt nur mit einer Schriftart",
        "In points, such as 10pt; needs a font"},
       InputKind::openList,
       choices::FontSizes},
      {"StretchBreach",
       {"Letzte Zeile füllen", "Fill the last row"},
       {"Streckt das letzte Produkt bis zum Ende der Zeile",
        "Stretches the last product to the end of its row"}},
      {"Border",
       {"Rahmen", "Border"},
       {"Wie dick der Rahmen ist, in Pixeln; 0 ist keiner",
        "How thick the border is, in pixels; 0 is none"},
       InputKind::openList,
       choices::Pixels},
      {"Headline",
       {"Überschrift", "Headline"},
       {"Steht über den Produkten", "Stands above the products"}},
      {"TableBgColor",
       {"Tabellenfarbe", "Table colour"},
       {"Die Farbe hinter der Tabelle", "The colour behind the table"},
       InputKind::color},
      {"HeaderBgColor",
       {"Kopfzeilenfarbe", "Header colour"},
       {"Die Farbe hinter der Überschrift", "The colour behind the headline"},
       InputKind::color},
      {"HeaderCSSStyle",
       {"CSS der Kopfzeile", "CSS of the header"},
       {"CSS-Angaben für die Überschrift, etwa color:#333333",
        "CSS declarations for the headline, such as color:#333333"}},
      {"DefaultExtension",
       {"Dateiendung", "File extension"},
       {"Womit die Adressen der Produktseiten enden, etwa htm",
        "What the addresses of the product pages end in, such as htm"}},
      {"ClickId",
       {"Klick-Id", "Click id"},
       {"Unter diesem Namen werden die Klicks gezählt", "The name under which clicks are counted"}},
  };
  static constexpr std::string_view pages[] = {"propProdListGeneral", "propProdListDesign",
                                               "propProdListPicker"};
  static constexpr ControlDesign design = {
      .name = "DTCProductList",
      .title = {"Produkttabelle", "Product table"},
      .description = {"Ausgewählte Produkte in Spalten", "Chosen products in columns"},
      .group = groups::shop,
      .basename = "print",  // deliberate: not a name of its own
      .tagName = "productlist",
      .box = TableBox("Product-List", LayOut),
      .pages = pages,
  };
};

}  // namespace kvo
