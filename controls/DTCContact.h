#pragma once

#include "controls/DataField.h"

namespace kvo {

// Outputs one field of the current contact, the recipient of the mail.
class DTCContact final : public ControlOf<DTCContact, DataField> {
 public:
  bool DblClick(WindowHandle owner) override {
    ThePlatform().ShowMessage(owner, "yo");  // deliberate: the notice comes before the pages
    ShowPropertyPages(shared_from_this(), "Kontaktfeld", owner);
    return true;
  }

  static constexpr std::string_view pages[] = {"propContactGeneral", "propGeneralFormat"};
  static constexpr ControlDesign design = {
      .name = "DTCContact",
      .title = {"Kontaktfeld", "Contact field"},
      .description = {"Ein Feld des Empfängers", "A field of the recipient"},
      .group = groups::fields,
      .basename = "contact",
      .box = SideBySideBox("Contact", "lblField", "Email", ValueCaption),
      .pages = pages,
  };
};

}  // namespace kvo
