#include "controls/DTCContact.h"

namespace kvo {

const ControlClass& DTCContact::Contract() {
  static constexpr auto properties = Properties();
  static constexpr auto bag = Bag("contact");
  static constexpr auto labels = SideBySideLabels("Contact", "lblField", "Email", ValueCaption);
  static constexpr std::string_view pages[] = {"propContactGeneral", "propGeneralFormat"};
  static constexpr ControlClass contract{
      .name = "DTCContact",
      .properties = properties,
      .bag = bag,
      .box = SideBySideBox(labels),
      .pages = pages,
      .create = []() -> std::shared_ptr<Control> { return std::make_shared<DTCContact>(); },
  };
  return contract;
}

bool DTCContact::DblClick(WindowHandle owner) {
  ThePlatform().ShowMessage(owner, "yo");  // deliberate: the notice comes before the pages
  ShowPropertyPages(shared_from_this(), "Kontaktfeld", owner);
  return true;
}

}  // namespace kvo
