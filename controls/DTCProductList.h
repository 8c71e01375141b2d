#pragma once

#include "common/frame/Control.h"
#include "controls/OfficeHolder.h"

namespace kvo {

// Stands for a table of shop products. The template engine draws the table from the settings.
class DTCProductList final : public Control, public OfficeHolder {
 public:
  static const ControlClass& Contract();
  const ControlClass& Class() const override { return Contract(); }
  void AppendRuntimeText(std::string& out) const override;
  // The box follows a width in pixels; with any other width it keeps its last layout inside.
  void Resize() override;

  std::int32_t DisplayColumns() const { return displayColumns_; }
  void DisplayColumns(std::int32_t lNewDisplayColumns) { displayColumns_ = lNewDisplayColumns; }
  const std::string& TableWidth() const { return tableWidth_; }
  void TableWidth(std::string_view sNewTableWidth) {
    tableWidth_ = sNewTableWidth;
    Resize();
  }
  const std::string& SelectedProducts() const { return selectedProducts_; }
  void SelectedProducts(std::string_view sNewSelectedProducts) {
    selectedProducts_ = sNewSelectedProducts;
  }
  bool DisplayDesc2() const { return displayDesc2_; }
  void DisplayDesc2(bool bNewDisplayDesc2) { displayDesc2_ = bNewDisplayDesc2; }
  bool DisplayPrice() const { return displayPrice_; }
  void DisplayPrice(bool bNewDisplayPrice) { displayPrice_ = bNewDisplayPrice; }
  bool CacheObject() const { return cacheObject_; }
  void CacheObject(bool bNewCacheObject) { cacheObject_ = bNewCacheObject; }
  const std::string& DisplayThumb() const { return displayThumb_; }
  void DisplayThumb(std::string_view sNewDisplayThumb) { displayThumb_ = sNewDisplayThumb; }
  bool DisplayAsLink() const { return displayAsLink_; }
  void DisplayAsLink(bool bNewDisplayAsLink) { displayAsLink_ = bNewDisplayAsLink; }
  const std::string& FontFamily() const { return fontFamily_; }
  void FontFamily(std::string_view sNewFontFamily) { fontFamily_ = sNewFontFamily; }
  const std::string& FontSize() const { return fontSize_; }
  void FontSize(std::string_view sNewFontSize) { fontSize_ = sNewFontSize; }
  bool StretchBreach() const { return stretchBreach_; }
  void StretchBreach(bool bNewStretchBreach) { stretchBreach_ = bNewStretchBreach; }
  const std::string& Border() const { return border_; }
  void Border(std::string_view sNewBorder) { border_ = sNewBorder; }
  const std::string& Headline() const { return headline_; }
  void Headline(std::string_view sNewHeadline) { headline_ = sNewHeadline; }
  const std::string& TableBgColor() const { return tableBgColor_; }
  void TableBgColor(std::string_view sNewTableBgColor) { tableBgColor_ = sNewTableBgColor; }
  const std::string& HeaderBgColor() const { return headerBgColor_; }
  void HeaderBgColor(std::string_view sNewHeaderBgColor) { headerBgColor_ = sNewHeaderBgColor; }
  const std::string& HeaderCSSStyle() const { return headerCSSStyle_; }
  void HeaderCSSStyle(std::string_view sNewHeaderCSSStyle) { headerCSSStyle_ = sNewHeaderCSSStyle; }
  const std::string& ShopHTTPURL() const { return shopHTTPURL_; }
  void ShopHTTPURL(std::string_view sNewShopHTTPURL) { shopHTTPURL_ = sNewShopHTTPURL; }
  const std::string& ImagesHTTPURL() const { return imagesHTTPURL_; }
  void ImagesHTTPURL(std::string_view sNewImagesHTTPURL) { imagesHTTPURL_ = sNewImagesHTTPURL; }
  const std::string& DefaultExtension() const { return defaultExtension_; }
  void DefaultExtension(std::string_view sNewDefaultExtension) {
    defaultExtension_ = sNewDefaultExtension;
  }
  const std::string& ClickId() const { return clickId_; }
  void ClickId(std::string_view sNewClickId) { clickId_ = sNewClickId; }

 private:
  static void LayOut(Box& box, const Control& control);

  std::int32_t displayColumns_ = 0;
  std::string tableWidth_;
  std::string selectedProducts_;
  bool displayDesc2_ = false;
  bool displayPrice_ = false;
  bool cacheObject_ = false;
  std::string displayThumb_;
  bool displayAsLink_ = false;
  std::string fontFamily_;
  std::string fontSize_;
  bool stretchBreach_ = false;
  std::string border_;
  std::string headline_;
  std::string tableBgColor_;
  std::string headerBgColor_;
  std::string headerCSSStyle_;
  std::string shopHTTPURL_;
  std::string imagesHTTPURL_;
  std::string defaultExtension_;
  std::string clickId_;
  int laidOutWidth_ = 0;  // twips, of the last width in pixels; 0 while there was none
};

}  // namespace kvo
