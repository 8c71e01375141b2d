#pragma once

#include "controls/FieldOutput.h"

namespace kvo {

// Outputs one configuration item of the shop, such as the company name. No pages of its own.
class DTCConfig final : public ControlOf<DTCConfig, FieldOutput> {
 public:
  DTCConfig() : ControlOf(Item) {}

  Shown<Text> Item{*this};

  // clang-format off
  static constexpr PropertyRow rows[] = {
      // id property           key              read  write          emitted
      {4,   KVO(Item),         "item",          "",   kAlwaysStored, kAlways},
      {5,   KVO(DisplayValue), "display-value", "",   "",            kNever},
      {6,   KVO(Format),       "format",        "",   kAlwaysStored, kIfSet},
  };
  // clang-format on
  static constexpr PropertyInput inputs[] = {
      {"Item",
       {"Einstellung", "Setting"},
       {"Der Name der Einstellung, etwa company-name",
        "The name of the setting, such as company-name"}},
      kDisplayValueInput,
      kFormatInput,
  };
  static constexpr ControlDesign design = {
      .name = "DTCConfig",
      .title = {"Konfigurationswert", "Configuration item"},
      .description = {"Ein Wert aus den Einstellungen des Shops", "A value of the shop's settings"},
      .group = groups::fields,
      .basename = "print",  // deliberate: not a name of its own
      .tagName = "config",
      .box = SideBySideBox("Config", "lblItem", "company-name", ValueCaption),
  };
};

}  // namespace kvo
