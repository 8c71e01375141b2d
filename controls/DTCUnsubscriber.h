#pragma once

#include "controls/LinkBlock.h"

namespace kvo {

// The link with which a reader unsubscribes from the newsletter.
class DTCUnsubscriber final : public ControlOf<DTCUnsubscriber, LinkBlock> {
 public:
  Text Recipient;  // the mail address that receives the unsubscriptions
  Text Site;       // the address of the folder of the confirmation page, ending in "/"

  // clang-format off
  static constexpr PropertyRow rows[] = {
      // id property          key             read        write       emitted      stored
      {4,   KVO(HTMLContent), "html-content", "Abmelden", "Abmelden", kNever, kTrimmed},
      {5,   KVO(Recipient),   "recipient",    "",         "",         kAlways},
      {6,   KVO(Site),        "site",         "",         "",         kAlways},
  };
  // clang-format on
  static constexpr PropertyInput inputs[] = {
      kContentInput,
      {"Recipient",
       {"Empfänger", "Recipient"},
       {"Die Mailadresse, die die Abmeldungen bekommt",
        "The mail address that receives the cancellations"}},
      {"Site",
       {"Bestätigungsseite", "Confirmation page"},
       {"Die Adresse ihres Ordners, mit / am Ende", "The address of its folder, ending in /"}},
  };
  static constexpr std::string_view pages[] = {"propUnsubGeneral"};
  static constexpr ControlDesign design = {
      .name = "DTCUnsubscriber",
      .title = {"Abmeldelink", "Unsubscribe link"},
      .description = {"Damit bestellt der Empfänger den Newsletter ab",
                      "Lets the recipient cancel the newsletter"},
      .group = groups::sending,
      .basename = "print",  // deliberate: not a name of its own
      .tagName = "unsubscribe",
      .box = CaptionBox("Unsubscriber", 75, 0, 380),
      .pages = pages,
  };
};

}  // namespace kvo
