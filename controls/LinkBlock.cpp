#include "controls/LinkBlock.h"

#include "common/TagWriter.h"
#include "controls/BlockLevel.h"

namespace kvo {

void LinkBlock::AppendLinkBlock(std::string& out, Attribute first, Attribute second) const {
  out += kBlockStart;
  TagWriter(out, Namespace(), basename())
      .Attribute(first.name, first.value)
      .Attribute(second.name, second.value)
      .Close();
  AppendDecodeMarkupTokens(out, storedContent_);
  AppendEndTag(out, Namespace(), basename());
  out += kBlockEnd;
}

}  // namespace kvo
