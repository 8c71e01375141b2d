#pragma once

#include "controls/LinkBlock.h"

namespace kvo {

// A link whose clicks are counted.
class DTCClicktracker final : public ControlOf<DTCClicktracker, LinkBlock> {
 public:
  Text Href;     // the target address
  Text ClickId;  // the name under which clicks are counted

  // clang-format off
  static constexpr PropertyRow rows[] = {
      // id property          key             read  write  emitted      stored
      {4,   KVO(HTMLContent), "html-content", "",   "",    kNever, kTrimmed},
      {5,   KVO(Href),        "href",         "",   "",    kAlways},
      {6,   KVO(ClickId),     "click-id",     "",   "",    kAlways},
  };
  // clang-format on
  static constexpr PropertyInput inputs[] = {
      kContentInput,
      {"Href",
       {"Adresse", "Address"},
       {"Wohin der Link führt, mit https:// davor",
        "Where the link leads, beginning with https://"}},
      {"ClickId",
       {"Klick-Id", "Click id"},
       {"Unter diesem Namen werden die Klicks gezählt", "The name under which clicks are counted"}},
  };
  static constexpr std::string_view pages[] = {"propClickGeneral"};
  static constexpr ControlDesign design = {
      .name = "DTCClicktracker",
      .title = {"Gezählter Link", "Tracked link"},
      .description = {"Ein Link, dessen Klicks gezählt werden", "A link whose clicks are counted"},
      .group = groups::sending,
      .basename = "print",  // deliberate: not a name of its own
      .tagName = "click",
      .box = CaptionBox("ClickCounter", 90, 15, 380),
      .pages = pages,
  };
};

}  // namespace kvo
