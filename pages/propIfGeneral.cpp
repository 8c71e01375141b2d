#include "pages/propIfGeneral.h"

#include "pages/frmExpressionBuilder.h"

namespace kvo {
namespace {

// Stands round the test in the control, and not in the page's box.
constexpr char kPercent = '%';

std::string WithoutPercents(std::string_view test) {
  if (test.starts_with(kPercent)) test.remove_prefix(1);
  if (test.ends_with(kPercent)) test.remove_suffix(1);
  return std::string(test);
}

std::string WithoutBlanks(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return std::string(text);
}

}  // namespace

void propIfGeneral::SelectionChanged() {
  txtTestCondition.Text(WithoutPercents(Read("Test")));
  txtOnTrueContent.Text(WithoutBlanks(Read("OnTrue")));
  txtOnFalseContent.Text(WithoutBlanks(Read("OnFalse")));
  txtInfo.Text(Read("DisplayValue"));
}

void propIfGeneral::ApplyChanges() {
  Write("Test", kPercent + txtTestCondition.Text() + kPercent);  // round an empty test as well
  Write("OnTrue", txtOnTrueContent.Text());
  Write("OnFalse", txtOnFalseContent.Text());
  Write("DisplayValue", txtInfo.Text());
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
