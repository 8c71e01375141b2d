#pragma once

#include "controls/FieldOutput.h"

namespace kvo {

// Outputs the value of an expression of the template language, optionally in a data format.
class DTCPrint final : public ControlOf<DTCPrint, FieldOutput> {
 public:
  DTCPrint() : ControlOf(Value) {}

  Shown<Text> Value{*this};

  // clang-format off
  static constexpr PropertyRow rows[] = {
      // id property           key              read  write          emitted
      {4,   KVO(Value),        "value",         "",   kAlwaysStored, kAlways},
      {5,   KVO(DisplayValue), "display-value", "",   "",            kNever},
      {6,   KVO(Format),       "format",        "",   kAlwaysStored, kIfSet},
  };
  // clang-format on
  static constexpr PropertyInput inputs[] = {
      {"Value",
       {"Ausdruck", "Expression"},
       {"Was ausgegeben wird, etwa #order.total#", "What is printed, such as #order.total#"}},
      kDisplayValueInput,
      kFormatInput,
  };
  static constexpr std::string_view pages[] = {"propPrintGeneral", "propGeneralFormat"};
  static constexpr ControlDesign design = {
      .name = "DTCPrint",
      .title = {"Ausdruck", "Expression"},
      .description = {"Gibt einen Ausdruck aus, auch formatiert",
                      "Prints an expression, formatted if you like"},
      .group = groups::fields,
      .basename = "print",
      .box = SideBySideBox("Print", "lblValue", "<Value>", ValueCaption),
      .pages = pages,
  };
};

}  // namespace kvo
