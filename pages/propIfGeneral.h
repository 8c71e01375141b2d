#pragma once

#include "common/forms/PageField.h"

namespace kvo {

// The condition of an if block, its description and its two contents.
class propIfGeneral final : public PropertyPage {
 public:
  propIfGeneral() : PropertyPage("Allgemein") {}

  KVO_CONTROL(Label, lblTestCondition, .caption = "Bedingung:", .at = {240, 180, 3420, 240});
  KVO_FIELD(TextBox, txtTestCondition,
            Binding("Test").Shown(WithoutPercents).Stored(BetweenPercents),
            .at = {240, 420, 3420, 300});
  KVO_CONTROL(
      CommandButton, cmdShowExpressionBuilder, .caption = "Ausdruck erstellen...",
      .at = {3720, 390, 1800, 360},
      .onClick = [this](CommandButton&) { cmdShowExpressionBuilder_Click(); });
  KVO_CONTROL(Label, lblInfo, .caption = "Name (optional):", .at = {240, 840, 5280, 240});
  KVO_FIELD(TextBox, txtInfo, "DisplayValue", .at = {240, 1080, 5280, 300});
  KVO_CONTROL(TabControl, sstOnContent, .at = {240, 1560, 5280, 2820});
  KVO_CONTROL_IN(sstOnContent, TabPanel, sapOnTrue, .caption = "Bedingung erfüllt");
  KVO_CONTROL_IN(sapOnTrue, Label, lblOnTrueContent,
                 .caption = "HTML-Code bei zutreffender Bedingung:", .at = {120, 120, 5040, 240});
  KVO_FIELD_IN(sapOnTrue, TextBox, txtOnTrueContent,
               Binding("OnTrue").Shown(WithoutBlanks).Before(txtInfo), .at = {120, 360, 5040, 1980},
               .font = kMarkupFont, .multiLine = true);
  KVO_CONTROL_IN(sstOnContent, TabPanel, sapOnFalse, .caption = "Bedingung nicht erfüllt");
  KVO_CONTROL_IN(sapOnFalse, Label, lblOnFalseContent,
                 .caption = "HTML-Code bei nicht zutreffender Bedingung: (optional):",
                 .at = {120, 120, 5040, 240});
  KVO_FIELD_IN(sapOnFalse, TextBox, txtOnFalseContent,
               Binding("OnFalse").Shown(WithoutBlanks).Before(txtInfo),
               .at = {120, 360, 5040, 1980}, .font = kMarkupFont, .multiLine = true);

 private:
  // The control holds the test between percent signs, the page's box without them.
  static std::string WithoutPercents(std::string test);
  static std::string BetweenPercents(const std::string& test);  // even an empty test
  static std::string WithoutBlanks(std::string text);
  void cmdShowExpressionBuilder_Click();
};

}  // namespace kvo
