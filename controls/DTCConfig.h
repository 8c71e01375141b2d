#pragma once

#include "controls/FieldOutput.h"

namespace kvo {

// Outputs one configuration item of the shop, such as the company name. No pages of its own.
class DTCConfig final : public FieldOutput {
 public:
  static const ControlClass& Contract();
  const ControlClass& Class() const override { return Contract(); }
  void AppendRuntimeText(std::string& out) const override;

  const std::string& Item() const { return MainValue(); }
  void Item(std::string_view sNewItem) { MainValue(sNewItem); }
  using Object::Item;
};

}  // namespace kvo
