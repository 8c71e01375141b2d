#include "controls/DTCScript.h"

#include "common/frame/TagWriter.h"

namespace kvo {

void DTCScript::AppendRuntimeText(std::string& out) const {
  TagWriter(out, Namespace(), basename()).Close();
  AppendDecodeMarkupTokens(out, HTMLContent.Held());
  AppendEndTag(out, Namespace(), basename());
}

}  // namespace kvo
