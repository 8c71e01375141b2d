#pragma once

#include "common/frame/Control.h"
#include "controls/OfficeHolder.h"

namespace kvo {

// Conditional content: HTML for when a test holds and, optionally, for when it does not.
class DTCIf final : public Control, public OfficeHolder {
 public:
  static const ControlClass& Contract();
  const ControlClass& Class() const override { return Contract(); }
  void AppendRuntimeText(std::string& out) const override;

  // The author's description of the condition.
  std::string DisplayValue() const { return DecodeMarkupTokens(storedDisplayValue_); }
  void DisplayValue(std::string_view sNewDisplayValue) {
    storedDisplayValue_ = EncodeMarkupTokens(sNewDisplayValue);
    UpdateDisplay();
  }
  const std::string& Test() const { return test_; }
  void Test(std::string_view sNewTest) { test_ = sNewTest; }
  std::string OnTrue() const { return DecodeMarkupTokens(storedOnTrue_); }
  void OnTrue(std::string_view sNewOnTrue) { storedOnTrue_ = EncodeMarkupTokens(sNewOnTrue); }
  std::string OnFalse() const { return DecodeMarkupTokens(storedOnFalse_); }
  void OnFalse(std::string_view sNewOnFalse) { storedOnFalse_ = EncodeMarkupTokens(sNewOnFalse); }

 private:
  std::string test_;
  // In token form, as the bag holds them.
  std::string storedDisplayValue_;
  std::string storedOnTrue_;
  std::string storedOnFalse_;
};

}  // namespace kvo
