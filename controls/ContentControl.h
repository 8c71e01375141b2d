// Author-written HTML held in token form.
#pragma once

#include <string>
#include <string_view>

#include "common/frame/Control.h"

namespace kvo {

// A control with inner HTML. The bag holds the token form; the property speaks plain HTML.
class ContentControl : public Control {
 public:
  std::string HTMLContent() const { return DecodeMarkupTokens(storedContent_); }
  void HTMLContent(std::string_view sNewHTMLContent) {
    storedContent_ = EncodeMarkupTokens(sNewHTMLContent);
  }

 protected:
  std::string storedContent_;
};

}  // namespace kvo
