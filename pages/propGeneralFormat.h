#pragma once

#include <string_view>

#include "common/forms/PageField.h"

namespace kvo {

// The data format of a print, contact or order control: one of a list, or any typed pattern.
class propGeneralFormat final : public PropertyPage {
 public:
  propGeneralFormat() : PropertyPage("Datenformat") {}

  // A row's key is its pattern.
  KVO_FIELD(
      ComboBox, cboFormat, "Format", .at = {1680, 840, 3855, 315}, .editable = true,
      .onChange = [this](ComboBox&) { cboFormat_Change(); });
  KVO_CONTROL(Label, lblGeneralFormat, .caption = "Anzeigeformat:", .at = {240, 870, 1110, 195});
  KVO_CONTROL(Label, lblGeneralDataFormatInfo,
              .caption = "Wählen Sie bitte eine Formatierungsfunktion für ein Datenfeld.",
              .at = {240, 240, 5295, 495}, .wraps = true);
  KVO_CONTROL(Label, lblFormatString, .caption = kNoFormat, .at = {1680, 1200, 3135, 255});

 private:
  static constexpr std::string_view kNoFormat = "keine Formatangaben";

  void Initialize() override;
  void cboFormat_Change();
};

}  // namespace kvo
