#pragma once

#include "controls/DataField.h"

namespace kvo {

// Outputs one field of the current order. A double click does nothing of its own.
class DTCOrder final : public DataField {
 public:
  static const ControlClass& Contract();
  const ControlClass& Class() const override { return Contract(); }
};

}  // namespace kvo
