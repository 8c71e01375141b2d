#pragma once

#include "common/forms/PageField.h"

namespace kvo {

// Address, identifier and content of a click-tracked link.
class propClickGeneral final : public PropertyPage {
 public:
  propClickGeneral() : PropertyPage("Allgemein", Filling::isNoChange) {}

  KVO_CONTROL(Label, lblHref, .caption = "Internet Adresse (URL)", .at = {180, 360, 5295, 240});
  KVO_FIELD(TextBox, txtHref, "Href", .at = {180, 600, 5295, 285});
  KVO_CONTROL(Label, lblClickId, .caption = "Klick-Id (zur späteren Auswertung)",
              .at = {180, 1080, 5295, 240});
  KVO_FIELD(TextBox, txtClickId, "ClickId", .at = {180, 1320, 5295, 285});
  KVO_CONTROL(Label, lblHTMLContent, .caption = "HTML Inhalt:", .at = {180, 1920, 5295, 240});
  KVO_FIELD(TextBox, txtHTMLContent, "HTMLContent", .at = {180, 2160, 5295, 2205},
            .font = kMarkupFont, .multiLine = true);
};

}  // namespace kvo
