#pragma once

#include "common/forms/PropertyPage.h"

namespace kvo {

// The expression that a print control outputs.
class propPrintGeneral final : public PropertyPage {
 public:
  propPrintGeneral() : PropertyPage("Allgemein") {}

  KVO_CONTROL(Label, lblPrintInfo, .caption = "KVML Ausdruck zur Ausgabe",
              .at = {240, 240, 5175, 255});
  KVO_CONTROL(TextBox, txtValue, .at = {240, 480, 5295, 300}, .onChange = marksChanged);

 private:
  void SelectionChanged() override { txtValue.Text(Read("Value")); }
  void ApplyChanges() override { Write("Value", txtValue.Text()); }
};

}  // namespace kvo
