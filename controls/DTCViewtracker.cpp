#include "controls/DTCViewtracker.h"

#include "common/frame/TagWriter.h"

namespace kvo {

const ControlClass& DTCViewtracker::Contract() {
  static constexpr auto bag = FrameKeys("print");  // deliberate: not a name of its own
  static constexpr auto labels = CaptionLabel("ViewCounter", 90);
  static constexpr ControlClass contract{
      .name = "DTCViewtracker",
      .properties = kFramePropertiesOnly,
      .bag = bag,
      .box = CaptionBox(labels, 15, 375),
      .pages = {},
      .create = []() -> std::shared_ptr<Control> { return std::make_shared<DTCViewtracker>(); },
  };
  return contract;
}

void DTCViewtracker::AppendRuntimeText(std::string& out) const {
  TagWriter(out, Namespace(), basename()).CloseEmpty();
}

}  // namespace kvo
