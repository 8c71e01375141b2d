#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/forms/Form.h"
#include "common/values/Object.h"

namespace kvo {

// The dialog that builds a test expression from contact fields. The caller sets `Office` and
// `Expression`, calls Init, shows it, then reads `CancelForm` and `Expression`.
class frmExpressionBuilder final : public Form {
 public:
  frmExpressionBuilder() : Form("Ausdruck-Assistent", {6480, 4200}) {}

  ObjectRef Office;
  bool CancelForm = false;

  // Unchanged until the dialog ends with "Ok".
  const std::string& Expression() const { return expression_; }
  void Expression(std::string sNewExpression);

  // Empties the lists and fills them from `Office`.
  void Init();

  Label lblLabel[3] = {
      {*this, "lblLabel", {.caption = "Datenfeld:", .at = {180, 210, 1200, 240}}},
      {*this, "lblLabel", {.caption = "Operator:", .at = {180, 630, 1200, 240}}},
      {*this, "lblLabel", {.caption = "Wert:", .at = {180, 1050, 1200, 240}}},
  };
  KVO_CONTROL(
      ComboBox, cboFields, .at = {1440, 180, 4860, 300},
      .onChange = [this](ComboBox&) { cboFields_Select(); });
  KVO_CONTROL(ComboBox, cboOperator, .at = {1440, 600, 4860, 300});
  KVO_CONTROL(TextBox, txtArgument, .at = {1440, 1020, 4860, 300});
  KVO_CONTROL(
      CommandButton, cmdAdd, .caption = "Hinzufügen", .at = {1440, 1440, 1500, 360},
      .onClick = [this](CommandButton&) { cmdAdd_Click(); });
  KVO_CONTROL(
      CommandButton, cmdAndOperator, .caption = "UND", .at = {3060, 1440, 900, 360},
      .onClick = [this](CommandButton&) { Append("&amp;&amp;"); });
  KVO_CONTROL(
      CommandButton, cmdOrOperator, .caption = "ODER", .at = {4080, 1440, 900, 360},
      .onClick = [this](CommandButton&) { Append("||"); });
  KVO_CONTROL(TextBox, txtIfExpression, .at = {180, 1980, 6120, 1320}, .multiLine = true);
  KVO_CONTROL(Frame, frmSeperator, .at = {180, 3480, 6120, 30});
  KVO_CONTROL(
      CommandButton, cmdOk, .caption = "Ok", .at = {3180, 3660, 1500, 360},
      .role = CommandButton::Role::acceptsDialog,
      .onClick = [this](CommandButton&) { cmdOk_Click(); });
  KVO_CONTROL(
      CommandButton, cmdCancel, .caption = "Abbrechen", .at = {4800, 3660, 1500, 360},
      .role = CommandButton::Role::cancelsDialog, .onClick = [this](CommandButton&) { Closing(); });

 private:
  // The window's close button acts as "Abbrechen".
  void Closing() override;
  void cboFields_Select();
  void cmdAdd_Click();
  void cmdOk_Click();

  void Append(std::string_view text);
  // RuntimeError 91 without an `Office`; an unknown field is the collection's error.
  std::int32_t DataTypeOf(const std::string& sqlName) const;
  void FillOperators(std::int32_t dataType);

  std::string expression_;
};

}  // namespace kvo
