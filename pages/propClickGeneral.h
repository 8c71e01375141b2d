#pragma once

#include "common/forms/PropertyPage.h"

namespace kvo {

// Address, identifier and content of a click-tracked link.
class propClickGeneral final : public PropertyPage {
 public:
  propClickGeneral() : PropertyPage("Allgemein") {}

  KVO_CONTROL(Label, lblHref, .caption = "Internet Adresse (URL)", .at = {180, 360, 5295, 240});
  KVO_CONTROL(TextBox, txtHref, .at = {180, 600, 5295, 285}, .onChange = marksChangedUnlessLoading,
              .onGotFocus = SelectAllText);
  KVO_CONTROL(Label, lblClickId, .caption = "Klick-Id (zur späteren Auswertung)",
              .at = {180, 1080, 5295, 240});
  KVO_CONTROL(TextBox, txtClickId, .at = {180, 1320, 5295, 285},
              .onChange = marksChangedUnlessLoading, .onGotFocus = SelectAllText);
  KVO_CONTROL(Label, lblHTMLContent, .caption = "HTML Inhalt:", .at = {180, 1920, 5295, 240});
  KVO_CONTROL(TextBox, txtHTMLContent, .at = {180, 2160, 5295, 2205}, .font = kMarkupFont,
              .multiLine = true, .onChange = marksChangedUnlessLoading,
              .onGotFocus = SelectAllText);

 private:
  void SelectionChanged() override {
    const Loading loading(*this);
    Fill(fields_);
  }
  void ApplyChanges() override { Store(fields_); }

  const TextField fields_[3] = {
      {txtHref, "Href"}, {txtClickId, "ClickId"}, {txtHTMLContent, "HTMLContent"}};
};

}  // namespace kvo
