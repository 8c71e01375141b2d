#pragma once

#include "common/frame/Control.h"

namespace kvo {

// Marks the place of the mail's view counter. No settings and no pages of its own.
class DTCViewtracker final : public ControlOf<DTCViewtracker> {
 public:
  static constexpr std::array<PropertyRow, 0> rows{};
  static constexpr ControlDesign design = {
      .name = "DTCViewtracker",
      .title = {"Öffnungszähler", "View counter"},
      .description = {"Zählt, wie oft die Mail geöffnet wird",
                      "Counts how often the mail is opened"},
      .group = groups::sending,
      .basename = "print",  // deliberate: not a name of its own
      .tagName = "viewtracker",
      .box = CaptionBox("ViewCounter", 90, 15, 375),
  };
};

}  // namespace kvo
