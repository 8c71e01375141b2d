#include "pages/propIfGeneral.h"

#include "pages/frmExpressionBuilder.h"

namespace kvo {
namespace {

constexpr char kPercent = '%';

}  // namespace

std::string propIfGeneral::WithoutPercents(std::string test) {
  if (test.starts_with(kPercent)) test.erase(0, 1);
  if (test.ends_with(kPercent)) test.pop_back();
  return test;
}

std::string propIfGeneral::BetweenPercents(const std::string& test) {
  return kPercent + test + kPercent;
}

std::string propIfGeneral::WithoutBlanks(std::string text) {
  text.erase(0, text.find_first_not_of(' '));
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

void propIfGeneral::cmdShowExpressionBuilder_Click() {
  const Variant office = SelectedControls(0).Get("Office");
  frmExpressionBuilder builder;
  if (const ObjectRef* held = office.If<ObjectRef>()) builder.Office = *held;
  builder.Expression(txtTestCondition.Text());
  builder.Init();
  builder.ShowModal();
  if (!builder.CancelForm) txtTestCondition.Text(builder.Expression());
}

}  // namespace kvo
