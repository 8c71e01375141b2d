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
