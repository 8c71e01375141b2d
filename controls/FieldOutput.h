// Base of the controls that output one value: a main value, the caption shown in its place, and an
// optional data format.
#pragma once

#include "common/frame/Control.h"

namespace kvo {

class FieldOutput : public Control {
 public:
  // The main value is a property of the class itself, under a name of its own.
  explicit FieldOutput(const Text& mainValue) : mainValue_(mainValue) {}

  Shown<Text> DisplayValue{*this};
  Text Format;

  static constexpr PropertyInput kDisplayValueInput = {
      "DisplayValue",
      {"Beschriftung", "Caption"},
      {"Steht im Kästchen; ohne sie, was ausgegeben wird",
       "Stands in the box; without it, what is printed"}};
  static constexpr PropertyInput kFormatInput = {
      "Format",
      {"Format", "Format"},
      {"Wie Zahlen, Datum und Uhrzeit aussehen", "How numbers, dates and times look"},
      InputKind::openList,
      choices::Formats};

  // Without a main value, emits nothing.
  void AppendRuntimeText(std::string& out) const override {
    if (!mainValue_().empty()) Control::AppendRuntimeText(out);
  }

 protected:
  // DisplayValue, or the main value when that is empty.
  static std::string_view ValueCaption(const Control& control) {
    const auto& self = static_cast<const FieldOutput&>(control);
    return self.DisplayValue().empty() ? self.mainValue_() : self.DisplayValue();
  }

 private:
  const Text& mainValue_;
};

}  // namespace kvo
