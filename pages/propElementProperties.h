#pragma once

#include "common/forms/PropertyPage.h"

namespace kvo {

// An element's name, what of it is rendered, and its inner HTML.
class propElementProperties final : public PropertyPage {
 public:
  propElementProperties() : PropertyPage("Allgemein") {}

  KVO_CONTROL(Label, lblElementBasename,
              .caption = "Name des HTML Elementes (TAG):", .at = {240, 240, 5280, 240});
  KVO_CONTROL(TextBox, txtElementBasename, .at = {240, 480, 5280, 300},
              .onChange = marksChangedUnlessLoading, .onGotFocus = SelectAllText);
  KVO_CONTROL(
      OptionButton, optSingleLineElement, .caption = "Normal", .at = {240, 960, 5280, 240},
      .onClick = [this](OptionButton& option) { ModeChosen(option); });
  KVO_CONTROL(
      OptionButton, optOpeningTagOnly, .caption = "Nur öffnendes HTML Element erstellen",
      .at = {240, 1260, 5280, 240},
      .onClick = [this](OptionButton& option) { ModeChosen(option); });
  KVO_CONTROL(
      OptionButton, optClosingTagOnly, .caption = "Nur schliessendes HTML Element erstellen",
      .at = {240, 1560, 5280, 240},
      .onClick = [this](OptionButton& option) { ModeChosen(option); });
  KVO_CONTROL(Label, lblHTMLContent, .caption = "HTML Inhalt:", .at = {240, 1980, 5280, 240});
  KVO_CONTROL(TextBox, txtHTMLContent, .at = {240, 2220, 5280, 2100}, .font = kMarkupFont,
              .multiLine = true, .onChange = marksChangedUnlessLoading,
              .onGotFocus = SelectAllText);

 private:
  void SelectionChanged() override;
  void ApplyChanges() override;
  void ModeChosen(OptionButton& option);
};

}  // namespace kvo
