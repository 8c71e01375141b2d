#pragma once

#include "common/frame/Control.h"

namespace kvo {

// Stands for the table of an order's positions. The template engine draws the table.
class DTCPositionList final : public Control {
 public:
  static const ControlClass& Contract();
  const ControlClass& Class() const override { return Contract(); }
  void AppendRuntimeText(std::string& out) const override;

  const std::string& OrderId() const { return orderId_; }
  void OrderId(std::string_view sNewOrderId) { orderId_ = sNewOrderId; }
  const std::string& TableCellSpacing() const { return tableCellSpacing_; }
  void TableCellSpacing(std::string_view sNewTableCellSpacing) {
    tableCellSpacing_ = sNewTableCellSpacing;
  }
  const std::string& TableCellPadding() const { return tableCellPadding_; }
  void TableCellPadding(std::string_view sNewTableCellPadding) {
    tableCellPadding_ = sNewTableCellPadding;
  }
  const std::string& TableBorder() const { return tableBorder_; }
  void TableBorder(std::string_view sNewTableBorder) { tableBorder_ = sNewTableBorder; }
  const std::string& TableBackground() const { return tableBackground_; }
  void TableBackground(std::string_view sNewTableBackground) {
    tableBackground_ = sNewTableBackground;
  }
  const std::string& TableCssStyle() const { return tableCssStyle_; }
  void TableCssStyle(std::string_view sNewTableCssStyle) { tableCssStyle_ = sNewTableCssStyle; }
  const std::string& HeaderBackground() const { return headerBackground_; }
  void HeaderBackground(std::string_view sNewHeaderBackground) {
    headerBackground_ = sNewHeaderBackground;
  }
  const std::string& HeaderCSSStyle() const { return headerCSSStyle_; }
  void HeaderCSSStyle(std::string_view sNewHeaderCSSStyle) { headerCSSStyle_ = sNewHeaderCSSStyle; }
  const std::string& BodyBackground() const { return bodyBackground_; }
  void BodyBackground(std::string_view sNewBodyBackground) { bodyBackground_ = sNewBodyBackground; }
  const std::string& BodyCssStyle() const { return bodyCssStyle_; }
  void BodyCssStyle(std::string_view sNewBodyCssStyle) { bodyCssStyle_ = sNewBodyCssStyle; }

 private:
  // Initial value, bag default and "not written" at once.
  static constexpr std::string_view kCellSpacing = "1";
  static constexpr std::string_view kCellPadding = "3";
  static constexpr std::string_view kBorder = "0";

  std::string orderId_ = "#order.orderID#";  // deliberate: not as the bag's default spells it
  std::string tableCellSpacing_{kCellSpacing};
  std::string tableCellPadding_{kCellPadding};
  std::string tableBorder_{kBorder};
  std::string tableBackground_;
  std::string tableCssStyle_;
  std::string headerBackground_;
  std::string headerCSSStyle_;
  std::string bodyBackground_;
  std::string bodyCssStyle_;
};

}  // namespace kvo
