// A block around a link's content.
#pragma once

#include "common/frame/Control.h"
#include "common/frame/TagWriter.h"
#include "controls/BlockLevel.h"

namespace kvo {

class LinkBlock : public Control {
 public:
  TokenText HTMLContent;

  static constexpr PropertyInput kContentInput = {
      "HTMLContent",
      {"Inhalt des Links", "Content of the link"},
      {"Worauf der Leser klickt: Text oder HTML", "What the reader clicks: text or HTML"},
      InputKind::html};

  void AppendRuntimeText(std::string& out) const override {
    out += kBlockStart;
    TagWriter tag(out, Namespace(), basename());
    AppendAttributes(tag);
    tag.Close();
    AppendDecodeMarkupTokens(out, HTMLContent.Held());
    AppendEndTag(out, Namespace(), basename());
    out += kBlockEnd;
  }
};

}  // namespace kvo
