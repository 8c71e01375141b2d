#include "controls/DTCConfig.h"

namespace kvo {

const ControlClass& DTCConfig::Contract() {
  using Self = DTCConfig;
  static constexpr auto properties = FrameProperties({
      KVO_PROPERTY(4, Item),
      KVO_PROPERTY(5, DisplayValue),
      KVO_PROPERTY(6, Format),
  });
  // clang-format off
  static constexpr auto bag = FrameKeys("print", {  // deliberate: not a name of its own
      // key            read default  write default  in and out
      {"item",          "",           kAlwaysStored, Through(properties, "Item")},
      {"display-value", "",           "",            Through(properties, "DisplayValue")},
      {"format",        "",           kAlwaysStored, Through(properties, "Format")},
  });
  // clang-format on
  static constexpr auto labels =
      SideBySideLabels("Config", "lblItem", "company-name", ValueCaption);
  static constexpr ControlClass contract{
      .name = "DTCConfig",
      .properties = properties,
      .bag = bag,
      .box = SideBySideBox(labels),
      .pages = {},
      .create = []() -> std::shared_ptr<Control> { return std::make_shared<Self>(); },
  };
  return contract;
}

void DTCConfig::AppendRuntimeText(std::string& out) const { AppendOutputTag<"item">(out); }

}  // namespace kvo
