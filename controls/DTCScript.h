#pragma once

#include "controls/ContentControl.h"

namespace kvo {

// Carries a block of template code or HTML verbatim. No pages of its own.
class DTCScript final : public ContentControl {
 public:
  static const ControlClass& Contract();
  const ControlClass& Class() const override { return Contract(); }
  void AppendRuntimeText(std::string& out) const override;

  const std::string& DisplayValue() const { return displayValue_; }
  void DisplayValue(std::string_view sNewDisplayValue) {
    displayValue_ = sNewDisplayValue;
    UpdateDisplay();
  }

 private:
  std::string displayValue_;
};

}  // namespace kvo
