// A field of the host's data - of the contact or of the order - in an optional data format.
#pragma once

#include <array>

#include "controls/FieldOutput.h"
#include "controls/OfficeHolder.h"

namespace kvo {

class DataField : public FieldOutput, public OfficeHolder {
 public:
  // The field's database name. The readable name stands in DisplayValue.
  const std::string& Field() const { return MainValue(); }
  void Field(std::string_view sNewField) { MainValue(sNewField); }

  void AppendRuntimeText(std::string& out) const override { AppendOutputTag<"field">(out); }

 protected:
  static consteval auto Properties();
  static consteval auto Bag(std::string_view basename);
};

consteval auto DataField::Properties() {
  using Self = DataField;
  return FrameProperties({
      KVO_PROPERTY(4, Field),
      KVO_PROPERTY(5, DisplayValue),
      KVO_PROPERTY(6, Format),
      KVO_PROPERTY(7, Office),
  });
}

consteval auto DataField::Bag(std::string_view basename) {
  // clang-format off
  return FrameKeys(basename, {
      // key            read default  write default  in and out
      {"field",         "",           "",            Through(Properties(), "Field")},
      {"display-value", "",           "",            Through(Properties(), "DisplayValue")},
      {"format",        "",           kAlwaysStored, Through(Properties(), "Format")},
  });
  // clang-format on
}

}  // namespace kvo
