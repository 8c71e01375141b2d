#pragma once

#include "controls/FieldOutput.h"

namespace kvo {

// Outputs the value of an expression of the template language, optionally in a data format.
class DTCPrint final : public FieldOutput {
 public:
  static const ControlClass& Contract();
  const ControlClass& Class() const override { return Contract(); }
  void AppendRuntimeText(std::string& out) const override;

  const std::string& Value() const { return MainValue(); }
  void Value(std::string_view sNewValue) { MainValue(sNewValue); }
};

}  // namespace kvo
