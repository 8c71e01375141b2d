#pragma once

#include "controls/LinkBlock.h"

namespace kvo {

// The link with which a reader unsubscribes from the newsletter.
class DTCUnsubscriber final : public LinkBlock {
 public:
  static const ControlClass& Contract();
  const ControlClass& Class() const override { return Contract(); }
  void AppendRuntimeText(std::string& out) const override;

  // The mail address that receives the unsubscriptions.
  const std::string& Recipient() const { return recipient_; }
  void Recipient(std::string_view sNewRecipient) { recipient_ = sNewRecipient; }
  // The address of the folder of the confirmation page, ending in "/".
  const std::string& Site() const { return site_; }
  void Site(std::string_view sNewSite) { site_ = sNewSite; }

 private:
  std::string recipient_;
  std::string site_;
};

}  // namespace kvo
