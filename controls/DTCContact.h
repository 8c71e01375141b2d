#pragma once

#include "controls/DataField.h"

namespace kvo {

// Outputs one field of the current contact, the recipient of the mail.
class DTCContact final : public DataField {
 public:
  static const ControlClass& Contract();
  const ControlClass& Class() const override { return Contract(); }
  bool DblClick(WindowHandle owner) override;
};

}  // namespace kvo
