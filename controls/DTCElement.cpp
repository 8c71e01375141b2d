#include "controls/DTCElement.h"

#include "common/frame/TagWriter.h"
#include "common/values/RuntimeError.h"
#include "controls/BlockLevel.h"

namespace kvo {

void DTCElement::AppendRuntimeText(std::string& out) const {
  if (Value().empty()) return;
  const bool hasContent = !HTMLContent.Held().empty();
  if (hasContent) out += kBlockStart;
  TagWriter tag(out, Namespace(), basename());
  AppendAttributes(tag);
  if (!hasContent) return tag.CloseEmpty();
  tag.Close();
  AppendDecodeMarkupTokens(out, HTMLContent.Held());
  AppendEndTag(out, Namespace(), basename());
  out += kBlockEnd;
}

void DTCElement::EmitName(const PropertyRow&, const Control& control, TagWriter& tag) {
  tag.Attribute("name", static_cast<const DTCElement&>(control).Value());
}
void DTCElement::EmitOpening(const PropertyRow&, const Control& control, TagWriter& tag) {
  if (static_cast<const DTCElement&>(control).OpeningTagOnly())
    tag.AttributeAsIs("render-open-tag-only", "true");
}
void DTCElement::EmitClosing(const PropertyRow&, const Control& control, TagWriter& tag) {
  if (static_cast<const DTCElement&>(control).ClosingTagOnly())
    tag.AttributeAsIs("render-closing-tag-only", "true");
}
void DTCElement::EmitAttributes(const PropertyRow&, const Control& control, TagWriter& tag) {
  const auto& self = static_cast<const DTCElement&>(control);
  self.AttributesCollection.ForEachText([&tag](std::string_view item) {
    if (item.empty()) return;
    const std::size_t bar = item.find('|');
    if (bar == std::string_view::npos)
      throw RuntimeError(ErrorNumber::subscriptOutOfRange, '"' + std::string(item) + '"');
    const std::string_view name = item.substr(0, bar);
    const std::string_view value = item.substr(bar + 1, item.find('|', bar + 1) - bar - 1);
    if (!name.empty() && !value.empty()) tag.Attribute(name, value);
  });
}

}  // namespace kvo
