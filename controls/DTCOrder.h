#pragma once

#include "controls/DataField.h"

namespace kvo {

// Outputs one field of the current order. Leaves a double click to the host.
class DTCOrder final : public ControlOf<DTCOrder, DataField> {
 public:
  static constexpr std::string_view pages[] = {"propOrderGeneral", "propGeneralFormat"};
  static constexpr ControlDesign design = {
      .name = "DTCOrder",
      .title = {"Bestellfeld", "Order field"},
      .description = {"Ein Feld der Bestellung", "A field of the order"},
      .group = groups::fields,
      .basename = "order",
      .box = SideBySideBox("Order", "lblField", "OrderID", ValueCaption),
      .pages = pages,
  };
};

}  // namespace kvo
