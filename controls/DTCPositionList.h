#pragma once

#include "common/frame/Control.h"
#include "common/frame/TagWriter.h"

namespace kvo {

// Stands for the table of an order's positions. The template engine draws the table.
class DTCPositionList final : public ControlOf<DTCPositionList> {
 public:
  Text OrderId{"#order.orderID#"};  // deliberate: not as the bag's default spells it
  Text TableCellSpacing{"1"};
  Text TableCellPadding{"3"};
  Text TableBorder{"0"};
  Text TableBackground;
  Text TableCssStyle;
  Text HeaderBackground;
  Text HeaderCSSStyle;
  Text BodyBackground;
  Text BodyCssStyle;

 private:
  static void EmitOrderId(const PropertyRow& row, const Control& control, TagWriter& tag) {
    const auto& self = static_cast<const DTCPositionList&>(control);
    tag.Attribute(row.key, self.OrderId().empty() ? row.readDefault : self.OrderId());
  }

 public:
  // clang-format off
  static constexpr PropertyRow rows[] = {
      // id property               key                  read               write              emitted
      {4,   KVO(OrderId),          "order-id",          "#order.orderid#", "#order.orderid#", {EmitOrderId}},
      {5,   KVO(TableCellSpacing), "table-cellspacing", "1",               "1",               kIfSetUnlessDefault},
      {6,   KVO(TableCellPadding), "table-cellpadding", "3",               "3",               kIfSetUnlessDefault},
      {7,   KVO(TableBorder),      "table-border",      "0",               "0",               kIfSetUnlessDefault},
      {8,   KVO(TableBackground),  "table-bgcolor",     "",                "",                kIfSet},
      {9,   KVO(TableCssStyle),    "table-css-style",   "",                "",                kIfSet},
      {10,  KVO(HeaderBackground), "header-bgcolor",    "",                "",                kIfSet},
      {11,  KVO(HeaderCSSStyle),   "header-css-style",  "",                "",                kIfSet},
      {12,  KVO(BodyBackground),   "body-bgcolor",      "",                "",                kIfSet},
      {13,  KVO(BodyCssStyle),     "body-css-style",    "",                "",                kIfSet},
  };
  // clang-format on
  static constexpr std::string_view pages[] = {"propPosListDesign"};
  static constexpr ControlDesign design = {
      .name = "DTCPositionList",
      .title = {"Bestellpositionen", "Order positions"},
      .description = {"Die Positionen der Bestellung als Tabelle",
                      "The positions of the order as a table"},
      .group = groups::shop,
      .basename = "print",  // deliberate: not a name of its own
      .tagName = "positionlist",
      .box = TableBox("Position-List"),
      .pages = pages,
  };
};

}  // namespace kvo
