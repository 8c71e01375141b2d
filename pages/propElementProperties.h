#pragma once

#include "common/forms/PageField.h"

namespace kvo {

// An element's name, which of its tags are rendered, and its inner HTML.
class propElementProperties final : public PropertyPage {
  const Handler<OptionButton> modeChosen_ = [this](OptionButton& option) { ModeChosen(option); };

 public:
  propElementProperties() : PropertyPage("Allgemein", Filling::isNoChange) {}

  KVO_CONTROL(Label, lblElementBasename,
              .caption = "Name des HTML Elementes (TAG):", .at = {240, 240, 5280, 240});
  KVO_FIELD(TextBox, txtElementBasename, "Value", .at = {240, 480, 5280, 300});
  KVO_CONTROL(OptionButton, optSingleLineElement, .caption = "Normal", .at = {240, 960, 5280, 240},
              .onClick = modeChosen_);
  KVO_FIELD(OptionButton, optOpeningTagOnly, "OpeningTagOnly",
            .caption = "Nur öffnendes HTML Element erstellen", .at = {240, 1260, 5280, 240},
            .onClick = modeChosen_);
  KVO_FIELD(OptionButton, optClosingTagOnly, "ClosingTagOnly",
            .caption = "Nur schliessendes HTML Element erstellen", .at = {240, 1560, 5280, 240},
            .onClick = modeChosen_);
  KVO_CONTROL(Label, lblHTMLContent, .caption = "HTML Inhalt:", .at = {240, 1980, 5280, 240});
  // An element with only one rendered tag never keeps content.
  KVO_FIELD(TextBox, txtHTMLContent,
            Binding("HTMLContent")
                .Stored([this](std::string content) {
                  return optSingleLineElement.Value() ? std::move(content) : std::string();
                })
                .WrittenBefore(optOpeningTagOnly),
            .at = {240, 2220, 5280, 2100}, .font = kMarkupFont, .multiLine = true);

 private:
  void SelectionChanged() override;
  void ModeChosen(OptionButton& option);
};

}  // namespace kvo
