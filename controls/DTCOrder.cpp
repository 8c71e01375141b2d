#include "controls/DTCOrder.h"

namespace kvo {

const ControlClass& DTCOrder::Contract() {
  static constexpr auto properties = Properties();
  static constexpr auto bag = Bag("order");
  static constexpr auto labels = SideBySideLabels("Order", "lblField", "OrderID", ValueCaption);
  static constexpr std::string_view pages[] = {"propOrderGeneral", "propGeneralFormat"};
  static constexpr ControlClass contract{
      .name = "DTCOrder",
      .properties = properties,
      .bag = bag,
      .box = SideBySideBox(labels),
      .pages = pages,
      .create = []() -> std::shared_ptr<Control> { return std::make_shared<DTCOrder>(); },
  };
  return contract;
}

}  // namespace kvo
