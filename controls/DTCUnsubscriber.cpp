#include "controls/DTCUnsubscriber.h"

namespace kvo {

const ControlClass& DTCUnsubscriber::Contract() {
  using Self = DTCUnsubscriber;
  static constexpr auto properties = FrameProperties({
      KVO_PROPERTY(4, HTMLContent),
      KVO_PROPERTY(5, Recipient),
      KVO_PROPERTY(6, Site),
  });
  // clang-format off
  static constexpr auto bag = FrameKeys("print", {  // deliberate: not a name of its own
      // key           read default  write default  in and out
      {"html-content", "Abmelden",   "Abmelden",    kDirectTrimmed<&Self::storedContent_>},
      {"recipient",    "",           "",            kDirect<&Self::recipient_>},
      {"site",         "",           "",            kDirect<&Self::site_>},
  });
  // clang-format on
  static constexpr auto labels = CaptionLabel("Unsubscriber", 75);
  static constexpr std::string_view pages[] = {"propUnsubGeneral"};
  static constexpr ControlClass contract{
      .name = "DTCUnsubscriber",
      .properties = properties,
      .bag = bag,
      .box = CaptionBox(labels, 0, 380),
      .pages = pages,
      .create = []() -> std::shared_ptr<Control> { return std::make_shared<Self>(); },
  };
  return contract;
}

void DTCUnsubscriber::AppendRuntimeText(std::string& out) const {
  AppendLinkBlock<"recipient", "site">(out, recipient_, site_);
}

}  // namespace kvo
