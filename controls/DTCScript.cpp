#include "controls/DTCScript.h"

#include "common/frame/TagWriter.h"

namespace kvo {

const ControlClass& DTCScript::Contract() {
  using Self = DTCScript;
  static constexpr auto properties = FrameProperties({
      KVO_PROPERTY(4, DisplayValue),
      KVO_PROPERTY(5, HTMLContent),
  });
  // clang-format off
  static constexpr auto bag = FrameKeys("script", {
      // key            read default  write default  in and out
      {"display-value", "",           "",            Through(properties, "DisplayValue")},
      {"html-content",  "",           kAlwaysStored,
       InThrough<&Self::storedContent_>(properties, "HTMLContent")},
  });
  // clang-format on
  static constexpr auto labels =
      SideBySideLabels("Script", "lblValue", "...", [](const Control& control) {
        const std::string& shown = static_cast<const Self&>(control).displayValue_;
        return shown.empty() ? std::string_view("...") : shown;
      });
  static constexpr ControlClass contract{
      .name = "DTCScript",
      .properties = properties,
      .bag = bag,
      .box = SideBySideBox(labels),
      .pages = {},
      .create = []() -> std::shared_ptr<Control> { return std::make_shared<Self>(); },
  };
  return contract;
}

// Always emitted, without content too; exactly as typed, with no escaping.
void DTCScript::AppendRuntimeText(std::string& out) const {
  TagWriter(out, Namespace(), basename()).Close();
  AppendDecodeMarkupTokens(out, storedContent_);
  AppendEndTag(out, Namespace(), basename());
}

}  // namespace kvo
