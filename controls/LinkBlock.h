// A block around a link's content, with two attributes that are always written.
#pragma once

#include <string>
#include <string_view>

#include "controls/ContentControl.h"

namespace kvo {

class LinkBlock : public ContentControl {
 protected:
  struct Attribute {
    std::string_view name;
    std::string_view value;
  };
  void AppendLinkBlock(std::string& out, Attribute first, Attribute second) const;
};

}  // namespace kvo
