#pragma once

#include "common/frame/Control.h"

namespace kvo {

// Marks the place of the mail's view counter. No settings and no pages of its own.
class DTCViewtracker final : public Control {
 public:
  static const ControlClass& Contract();
  const ControlClass& Class() const override { return Contract(); }
  void AppendRuntimeText(std::string& out) const override;
};

}  // namespace kvo
