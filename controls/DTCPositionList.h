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
  static constexpr PropertyInput inputs[] = {
      {"OrderId",
       {"Bestellnummer", "Order number"},
       {"Der Ausdruck, der die Bestellung nennt", "The expression that names the order"}},
      {"TableCellSpacing",
       {"Zellenabstand", "Cell spacing"},
       {"Wie weit die Zellen auseinander stehen, in Pixeln",
        "How far the cells are apart, in pixels"},
       InputKind::openList,
       choices::Pixels},
      {"TableCellPadding",
       {"Textabstand", "Cell padding"},
       {"Wie weit der Text vom Rand seiner Zelle entfernt ist, in Pixeln",
        "How far text is from the edge of its cell, in pixels"},
       InputKind::openList,
       choices::Pixels},
      {"TableBorder",
       {"Rahmen", "Border"},
       {"Wie dick der Rahmen ist, in Pixeln; 0 ist keiner",
        "How thick the border is, in pixels; 0 is none"},
       InputKind::openList,
       choices::Pixels},
      {"TableBackground",
       {"Tabellenfarbe", "Table colour"},
       {"Die Farbe hinter der Tabelle", "The colour behind the table"},
       InputKind::color},
      {"TableCssStyle",
       {"CSS der Tabelle", "CSS of the table"},
       {"CSS-Angaben für die Tabelle, etwa color:#333333",
        "CSS declarations for the table, such as color:#333333"}},
      {"HeaderBackground",
       {"Kopfzeilenfarbe", "Header colour"},
       {"Die Farbe hinter der Kopfzeile", "The colour behind the header"},
       InputKind::color},
      {"HeaderCSSStyle",
       {"CSS der Kopfzeile", "CSS of the header"},
       {"CSS-Angaben für die Kopfzeile, etwa color:#333333",
        "CSS declarations for the header, such as color:#333333"}},
      {"BodyBackground",
       {"Zeilenfarbe", "Row colour"},
       {"Die Farbe hinter den Zeilen unter dem Kopf",
        "The colour behind the rows below the header"},
       InputKind::color},
      {"BodyCssStyle",
       {"CSS der Zeilen", "CSS of the rows"},
       {"CSS-Angaben für die Zeilen unter dem Kopf, etwa color:#333333",
        "CSS declarations for the rows below the header, such as color:#333333"}},
  };
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
