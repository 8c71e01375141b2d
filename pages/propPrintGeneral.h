#pragma once

#include "common/forms/PageField.h"

namespace kvo {

// The expression that a print control outputs.
class propPrintGeneral final : public PropertyPage {
 public:
  propPrintGeneral() : PropertyPage("Allgemein") {}

  KVO_CONTROL(Label, lblPrintInfo, .caption = "KVML Ausdruck zur Ausgabe",
              .at = {240, 240, 5175, 255});
  // Deliberate: does not select its text on focus, unlike other fields.
  KVO_FIELD(TextBox, txtValue, "Value", .at = {240, 480, 5295, 300}, .onGotFocus = kNothing);
};

}  // namespace kvo
