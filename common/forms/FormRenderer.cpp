#include "common/forms/FormRenderer.h"

#include <algorithm>

#include "common/forms/FormKeys.h"
#include "common/forms/PropertyRows.h"

namespace kvo {

FormRenderer::FormRenderer(Form& form) : form_(form) { form_.renderer_ = this; }

FormRenderer::~FormRenderer() { form_.renderer_ = nullptr; }

void FormRenderer::Focus(FormControl* control) {
  if (form_.focused_ == control) return;
  form_.focused_ = control;
  if (control != nullptr) control->RaiseGotFocus();
}

void FormRenderer::Edit(EditBox& box, std::size_t start, std::size_t length,
                        std::string_view typed) {
  if (!box.IsEditable()) return;
  if (!box.HoldsLineBreaks()) typed = OneLine(typed);
  if (length == 0 && typed.empty()) return;
  Touch(box);
  box.Replace(start, length, typed);
  box.TextTyped();
}

void FormRenderer::Select(EditBox& box, std::size_t start, std::size_t length) {
  box.SelStart(start);
  box.SelLength(length);
}

void FormRenderer::Choose(ComboBox& box, int row) {
  Touch(box);
  box.ListIndex(row);
  // Choosing the same row again moves the caret as well.
  if (box.SelStart() != 0 || box.SelLength() != 0) box.SelStart(0);
  if (box.onClick_) box.onClick_(box);
}

void FormRenderer::Click(CheckBox& box) {
  Touch(box);
  box.Value(!box.Value());
}

void FormRenderer::Click(OptionButton& button) {
  Touch(button);
  if (!button.Value())
    button.Value(true);
  else if (button.onClick_)
    button.onClick_(button);
}

void FormRenderer::Click(CommandButton& button) {
  Touch(button);
  if (button.onClick_) button.onClick_(button);
}

void FormRenderer::Tick(Timer& timer) {
  if (timer.running_ && timer.onTick_) timer.onTick_(timer);
}

void FormRenderer::SelectItem(PropertyGrid& grid, PropertyGridItem* item) {
  if (grid.selected_ == item) return;
  grid.selected_ = item;
  grid.Notify(Aspect::selection);
}

bool FormRenderer::TakesText(const PropertyGridItem& item) {
  const bool typeable = item.Kind() == ItemKind::text || item.Kind() == ItemKind::color ||
                        (item.Kind() == ItemKind::list && item.Editable());
  return typeable && item.Enabled();
}

void FormRenderer::EditValue(PropertyGridItem& item, std::string_view typed) {
  if (!TakesText(item)) return;
  Touch(item.Grid());
  item.Value(typed);
}

void FormRenderer::AppendToValue(PropertyGridItem& item, std::string_view typed) {
  if (!TakesText(item)) return;
  Touch(item.Grid());
  item.Append(typed);
}

void FormRenderer::ChooseValue(PropertyGridItem& item, const PropertyGridItem& choice) {
  if (!item.Enabled()) return;
  Touch(item.Grid());
  item.Value(choice.Caption());
}

void FormRenderer::ClickButton(PropertyGridItem& item) {
  if (!HasButton(item) || !item.Enabled()) return;
  Touch(item.Grid());
  if (item.Grid().onButtonClick_) item.Grid().onButtonClick_(item);
}

void FormRenderer::PressDelete(PropertyGrid& grid) {
  Touch(grid);
  if (grid.onDeleteKey_) grid.onDeleteKey_(grid);
}

void FormRenderer::SelectRows(Grid& grid, std::vector<std::size_t> rows) {
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  std::erase_if(rows, [&](std::size_t row) { return row >= grid.RowCount(); });
  if (grid.selectedRows_ == rows) return;
  grid.selectedRows_ = std::move(rows);
  grid.Notify(Aspect::selection);
}

void FormRenderer::DoubleClick(Grid& grid) {
  Touch(grid);
  if (grid.onDblClick_) grid.onDblClick_(grid);
}

}  // namespace kvo
