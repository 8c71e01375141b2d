#include "controls/DTCPrint.h"

namespace kvo {

const ControlClass& DTCPrint::Contract() {
  using Self = DTCPrint;
  static constexpr auto properties = FrameProperties({
      KVO_PROPERTY(4, Value),
      KVO_PROPERTY(5, DisplayValue),
      KVO_PROPERTY(6, Format),
  });
  // clang-format off
  static constexpr auto bag = FrameKeys("print", {
      // key            read default  write default  in and out
      {"value",         "",           kAlwaysStored, Through(properties, "Value")},
      {"display-value", "",           "",            Through(properties, "DisplayValue")},
      {"format",        "",           kAlwaysStored, Through(properties, "Format")},
  });
  static constexpr auto labels = SideBySideLabels("Print", "lblValue", "<Value>", ValueCaption);
  // clang-format on
  static constexpr std::string_view pages[] = {"propPrintGeneral", "propGeneralFormat"};
  static constexpr ControlClass contract{
      .name = "DTCPrint",
      .properties = properties,
      .bag = bag,
      .box = SideBySideBox(labels),
      .pages = pages,
      .create = []() -> std::shared_ptr<Control> { return std::make_shared<Self>(); },
  };
  return contract;
}

void DTCPrint::AppendRuntimeText(std::string& out) const { AppendOutputTag<"value">(out); }

}  // namespace kvo
