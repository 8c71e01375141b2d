#pragma once

#include "controls/LinkBlock.h"

namespace kvo {

// A link whose clicks are counted.
class DTCClicktracker final : public LinkBlock {
 public:
  static const ControlClass& Contract();
  const ControlClass& Class() const override { return Contract(); }
  void AppendRuntimeText(std::string& out) const override;

  // The target address.
  const std::string& Href() const { return href_; }
  void Href(std::string_view sNewHref) { href_ = sNewHref; }
  // The name under which clicks are counted.
  const std::string& ClickId() const { return clickId_; }
  void ClickId(std::string_view sNewClickId) { clickId_ = sNewClickId; }

 private:
  std::string href_;
  std::string clickId_;
};

}  // namespace kvo
