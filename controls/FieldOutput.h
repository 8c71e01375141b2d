// What the controls that output one value have in common: a main value, the caption shown in its
// place, and an optional data format.
#pragma once

#include <string>
#include <string_view>

#include "common/frame/Control.h"
#include "common/frame/TagWriter.h"

namespace kvo {

class FieldOutput : public Control {
 public:
  const std::string& DisplayValue() const { return displayValue_; }
  void DisplayValue(std::string_view sNewDisplayValue) {
    displayValue_ = sNewDisplayValue;
    UpdateDisplay();
  }
  const std::string& Format() const { return format_; }
  void Format(std::string_view sNewFormat) { format_ = sNewFormat; }

 protected:
  // `<ns:name attribute="main value" format="..."/>`; nothing at all without a main value.
  template <AttributeName attribute>
  void AppendOutputTag(std::string& out) const {
    if (mainValue_.empty()) return;
    TagWriter(out, Namespace(), basename())
        .template Attribute<attribute>(mainValue_)
        .template AttributeIfSet<"format">(format_)
        .CloseEmpty();
  }

  const std::string& MainValue() const { return mainValue_; }
  void MainValue(std::string_view newValue) {
    mainValue_ = newValue;
    UpdateDisplay();
  }

  // Caption of the value label: DisplayValue, or the main value when that is empty.
  static std::string_view ValueCaption(const Control& control) {
    const auto& self = static_cast<const FieldOutput&>(control);
    return self.displayValue_.empty() ? self.mainValue_ : self.displayValue_;
  }

 private:
  std::string mainValue_;
  std::string displayValue_;
  std::string format_;
};

}  // namespace kvo
