#include "controls/DTCClicktracker.h"

namespace kvo {

const ControlClass& DTCClicktracker::Contract() {
  using Self = DTCClicktracker;
  static constexpr auto properties = FrameProperties({
      KVO_PROPERTY(4, HTMLContent),
      KVO_PROPERTY(5, Href),
      KVO_PROPERTY(6, ClickId),
  });
  // clang-format off
  static constexpr auto bag = FrameKeys("print", {  // deliberate: not a name of its own
      // key           read default  write default  in and out
      {"html-content", "",           "",            kDirectTrimmed<&Self::storedContent_>},
      {"href",         "",           "",            kDirect<&Self::href_>},
      {"click-id",     "",           "",            kDirect<&Self::clickId_>},
  });
  // clang-format on
  static constexpr auto labels = CaptionLabel("ClickCounter", 90);
  static constexpr std::string_view pages[] = {"propClickGeneral"};
  static constexpr ControlClass contract{
      .name = "DTCClicktracker",
      .properties = properties,
      .bag = bag,
      .box = CaptionBox(labels, 15, 380),
      .pages = pages,
      .create = []() -> std::shared_ptr<Control> { return std::make_shared<Self>(); },
  };
  return contract;
}

void DTCClicktracker::AppendRuntimeText(std::string& out) const {
  AppendLinkBlock<"href", "click-id">(out, href_, clickId_);
}

}  // namespace kvo
