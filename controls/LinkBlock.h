// A block around a link's content, with two attributes that are always written.
#pragma once

#include <string>
#include <string_view>

#include "common/frame/TagWriter.h"
#include "controls/BlockLevel.h"
#include "controls/ContentControl.h"

namespace kvo {

class LinkBlock : public ContentControl {
 protected:
  template <AttributeName first, AttributeName second>
  void AppendLinkBlock(std::string& out, std::string_view firstValue,
                       std::string_view secondValue) const {
    out += kBlockStart;
    TagWriter(out, Namespace(), basename())
        .template Attribute<first>(firstValue)
        .template Attribute<second>(secondValue)
        .Close();
    AppendDecodeMarkupTokens(out, storedContent_);
    AppendEndTag(out, Namespace(), basename());
    out += kBlockEnd;
  }
};

}  // namespace kvo
