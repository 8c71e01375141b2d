// A field of the host's data - of the contact or of the order - in an optional data format.
#pragma once

#include "controls/FieldOutput.h"

namespace kvo {

class DataField : public FieldOutput {
  using Self = DataField;

 public:
  DataField() : FieldOutput(Field) {}

  Shown<Text> Field{*this};  // the database name; the readable name stands in DisplayValue
  Reference Office;

  // clang-format off
  static constexpr PropertyRow rows[] = {
      // id property           key              read  write          emitted
      {4,   KVO(Field),        "field",         "",   "",            kAlways},
      {5,   KVO(DisplayValue), "display-value", "",   "",            kNever},
      {6,   KVO(Format),       "format",        "",   kAlwaysStored, kIfSet},
      {7,   KVO(Office)},
  };
  // clang-format on
  static constexpr PropertyInput inputs[] = {
      {"Field",
       {"Feld", "Field"},
       {"Welches Feld der Office-Datei ausgegeben wird",
        "Which field of the office file is printed"},
       InputKind::officeField},
      kDisplayValueInput,
      kFormatInput,
  };
};

}  // namespace kvo
