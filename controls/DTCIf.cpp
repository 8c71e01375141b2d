#include "controls/DTCIf.h"

#include "common/frame/TagWriter.h"
#include "controls/BlockLevel.h"

namespace kvo {

// Already encoded; the attribute rule would change nothing.
void DTCIf::EmitDescription(const PropertyRow& row, const Control& control, TagWriter& tag) {
  if (!Description(control).empty()) tag.AttributeAsIs(row.key, Description(control));
}

void DTCIf::AppendRuntimeText(std::string& out) const {
  if (Test().empty()) return;
  constexpr std::string_view kElse = "else";
  out += kBlockStart;
  TagWriter tag(out, Namespace(), basename());
  AppendAttributes(tag);
  tag.Close();
  AppendDecodeMarkupTokens(out, OnTrue.Held());
  if (!OnFalse.Held().empty()) {
    TagWriter(out, Namespace(), kElse).Close();  // "else" whatever the base name is
    AppendDecodeMarkupTokens(out, OnFalse.Held());
    AppendEndTag(out, Namespace(), kElse);
  }
  AppendEndTag(out, Namespace(), basename());
  out += kBlockEnd;
}

}  // namespace kvo
