#include "pages/frmExpressionBuilder.h"

#include <algorithm>
#include <array>
#include <span>

#include "common/values/RuntimeError.h"

namespace kvo {
namespace {

struct Operator {
  std::string_view key;
  std::string_view text;
  std::string_view written;
};

// Entities, so that the expression can stand in a quoted attribute of an HTML page.
constexpr Operator kEquals = {"equals", "=", "=="};
constexpr Operator kGreaterThan = {"greaterThan", ">", "&gt;"};
constexpr Operator kLessThan = {"lessThan", "<", "&lt;"};
constexpr Operator kNotEqual = {"notEqual", "<>", "!="};
constexpr Operator kYes = {"yes", "ist Wahr", "==true"};
constexpr Operator kNo = {"no", "ist Falsch", "==false"};

constexpr std::array kEquality = {kEquals, kNotEqual};
constexpr std::array kAll = {kEquals, kGreaterThan, kLessThan, kNotEqual, kYes, kNo};
constexpr auto kOrder = std::span(kAll).first<4>();
constexpr auto kTruth = std::span(kAll).last<2>();

enum class ValueForm { quoted, asTyped, none };

struct FieldType {
  std::int32_t dataType;
  std::span<const Operator> operators;
  bool fieldQuoted;
  ValueForm value;  // none: the operator implies it; disables the value box
};

constexpr FieldType kFieldTypes[] = {
    // clang-format off
    {0, kEquality, true,  ValueForm::quoted},   // text
    {1, kOrder,    false, ValueForm::asTyped},  // number
    {3, kTruth,    false, ValueForm::none},     // yes or no
    {6, kOrder,    true,  ValueForm::quoted},   // ordered text, such as a date
    // clang-format on
};
// Every other type has no operators and adds nothing; fields of these types are not even listed.
constexpr std::array kUnlistedTypes = {2, 4, 5};

const FieldType* FindFieldType(std::int32_t dataType) {
  const auto* type = std::find_if(std::begin(kFieldTypes), std::end(kFieldTypes),
                                  [&](const FieldType& each) { return each.dataType == dataType; });
  return type == std::end(kFieldTypes) ? nullptr : type;
}

const Operator* FindOperator(const ComboBox::Row* row) {
  if (row == nullptr) return nullptr;
  const auto* found = std::find_if(kAll.begin(), kAll.end(), [row](const Operator& candidate) {
    return candidate.key == row->key;
  });
  return found == kAll.end() ? nullptr : found;
}

void AddTo(ComboBox& box, std::span<const Operator> operators) {
  for (const Operator& added : operators)
    box.AddItem(std::string(added.key), std::string(added.text));
}

std::string Quoted(const std::string& text, bool quoted) {
  return quoted ? '\'' + text + '\'' : text;
}

}  // namespace

void frmExpressionBuilder::Expression(std::string sNewExpression) {
  expression_ = std::move(sNewExpression);
  txtIfExpression.Text(expression_);
}

void frmExpressionBuilder::Init() {
  cboFields.Clear();
  cboOperator.Clear();
  AddTo(cboOperator, kOrder);
  if (Office == nullptr) return;
  ForEach(*ToObject(Office->Get("ContactFields")), [&](const Variant& element) {
    const ObjectRef field = ToObject(element);
    const std::int32_t dataType = ToInteger(field->Get("DataType"));
    if (std::find(kUnlistedTypes.begin(), kUnlistedTypes.end(), dataType) != kUnlistedTypes.end())
      return;
    const std::string key = ToText(field->Get("SQLName"));
    const auto isListed = [&](const ComboBox::Row& row) { return row.key == key; };
    if (std::none_of(cboFields.Rows().begin(), cboFields.Rows().end(), isListed))
      cboFields.AddItem(key, ToText(field->Get("DisplayName")));
  });
  if (!cboFields.Rows().empty()) cboFields.ListIndex(0);
}

std::int32_t frmExpressionBuilder::DataTypeOf(const std::string& sqlName) const {
  if (Office == nullptr) throw RuntimeError(ErrorNumber::objectNotSet, "Office");
  const ObjectRef fields = ToObject(Office->Get("ContactFields"));
  return ToInteger(ToObject(fields->Item(sqlName))->Get("DataType"));
}

void frmExpressionBuilder::cboFields_Select() {
  if (const ComboBox::Row* field = cboFields.SelectedItem()) FillOperators(DataTypeOf(*field->key));
}

void frmExpressionBuilder::FillOperators(std::int32_t dataType) {
  cboOperator.Clear();
  const FieldType* type = FindFieldType(dataType);
  if (type == nullptr) return;
  AddTo(cboOperator, type->operators);
  cboOperator.ListIndex(0);
  const bool takesValue = type->value != ValueForm::none;
  txtArgument.Enabled(takesValue);
  txtArgument.BackColor(takesValue ? SystemColor::windowBackground : SystemColor::buttonFace);
}

void frmExpressionBuilder::cmdAdd_Click() {
  const ComboBox::Row* field = cboFields.SelectedItem();
  if (field == nullptr)
    throw RuntimeError(ErrorNumber::objectNotSet, std::string(cboFields.Name()));
  const FieldType* type = FindFieldType(DataTypeOf(*field->key));
  const Operator* comparison = FindOperator(cboOperator.SelectedItem());
  if (comparison == nullptr) return;
  std::string text;
  if (type != nullptr) text = Quoted("#customer." + *field->key + "#", type->fieldQuoted);
  text += comparison->written;
  if (type != nullptr && type->value != ValueForm::none)
    text += Quoted(txtArgument.Text(), type->value == ValueForm::quoted);
  Append(text);
}

void frmExpressionBuilder::Append(std::string_view text) {
  txtIfExpression.Text(txtIfExpression.Text() + std::string(text));
}

void frmExpressionBuilder::cmdOk_Click() {
  expression_ = txtIfExpression.Text();
  CancelForm = false;
  Unload();
}

void frmExpressionBuilder::Closing() {
  CancelForm = true;
  Unload();
}

}  // namespace kvo
