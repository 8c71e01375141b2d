#include "controls/DTCPrint.h"

namespace kvo {

const ControlClass& DTCPrint::Contract() {
  using Self = DTCPrint;
  static constexpr PropertyRow properties[] = {
      KVO_PROPERTY(1, Namespace), KVO_PROPERTY(2, basename),     KVO_PROPERTY(3, DisplayBasename),
      KVO_PROPERTY(4, Value),     KVO_PROPERTY(5, DisplayValue), KVO_PROPERTY(6, Format),
  };
  // clang-format off
  static constexpr BagKey bag[] = {
      // key               read default  write default   in and out
      {"namespace",        "kv",         "kv",           Through(Property(properties, "Namespace"))},
      {"basename",         "print",      "print",        Through(Property(properties, "basename"))},
      {"display-basename", "",           "",             Through(Property(properties, "DisplayBasename"))},
      {"value",            "",           kAlwaysStored,  Through(Property(properties, "Value"))},
      {"display-value",    "",           "",             Through(Property(properties, "DisplayValue"))},
      {"format",           "",           kAlwaysStored,  Through(Property(properties, "Format"))},
  };
  static constexpr BoxLabel labels[] = {
      // name         design caption  weight              left, top, width, height
      {"lblBasename", "Print",        FontWeight::bold,   {120, 90, 0, 195}, true, BasenameCaption},
      {"lblValue",    "<Value>",      FontWeight::normal, {555, 90, 0, 195}, true, ValueCaption},
  };
  // clang-format on
  static constexpr std::string_view pages[] = {"propPrintGeneral", "propGeneralFormat"};
  static constexpr ControlClass contract{
      .name = "DTCPrint",
      .properties = properties,
      .bag = bag,
      .box = {1305, 390, labels, {15, 15, 1275, 360}, LayOutSideBySide},
      .pages = pages,
      .create = []() -> std::shared_ptr<Control> { return std::make_shared<Self>(); },
  };
  return contract;
}

void DTCPrint::AppendRuntimeText(std::string& out) const { AppendOutputTag(out, "value"); }

}  // namespace kvo
