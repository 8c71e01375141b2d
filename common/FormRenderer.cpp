#include "common/FormRenderer.h"

#include <algorithm>

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
  if (!box.HoldsLineBreaks())
    typed = typed.substr(0, typed.find_first_of(std::string_view("\r\n\0", 3)));
  if (length == 0 && typed.empty()) return;
  const std::string& old = box.Text();
  const std::size_t begin = CharacterOffset(old, start);
  const std::size_t end = begin + CharacterOffset(std::string_view(old).substr(begin), length);
  std::string text = old.substr(0, begin);
  text += typed;
  const std::size_t caret = CharacterCount(text);
  text += old.substr(end);
  box.TextReplaced(std::move(text), caret, EditBox::Source::user);
}

void FormRenderer::Select(EditBox& box, std::size_t start, std::size_t length) {
  box.SelStart(start);
  box.SelLength(length);
}

void FormRenderer::Choose(ComboBox& box, int row) {
  box.ListIndex(row);
  if (box.onClick_) box.onClick_(box);
}

void FormRenderer::Click(OptionButton& button) {
  if (!button.Value())
    button.Value(true);
  else if (button.onClick_)
    button.onClick_(button);
}

void FormRenderer::Click(CommandButton& button) {
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

void FormRenderer::EditValue(PropertyGridItem& item, std::string_view typed) {
  const bool typeable = item.Kind() == ItemKind::text || item.Kind() == ItemKind::color ||
                        (item.Kind() == ItemKind::list && item.Editable());
  if (typeable && item.Enabled()) item.Value(typed);
}

void FormRenderer::ChooseValue(PropertyGridItem& item, const PropertyGridItem& choice) {
  if (item.Enabled()) item.Value(choice.Caption());
}

void FormRenderer::ClickButton(PropertyGridItem& item) {
  const bool button = item.Kind() == ItemKind::color || item.Kind() == ItemKind::button;
  if (button && item.Enabled() && item.Grid().onButtonClick_) item.Grid().onButtonClick_(item);
}

void FormRenderer::PressDelete(PropertyGrid& grid) {
  if (grid.onDeleteKey_) grid.onDeleteKey_(grid);
}

void FormRenderer::SelectRows(Grid& grid, std::vector<std::size_t> rows) {
  std::ranges::sort(rows);
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  std::erase_if(rows, [&](std::size_t row) { return row >= grid.RowCount(); });
  if (grid.selectedRows_ == rows) return;
  grid.selectedRows_ = std::move(rows);
  grid.Notify(Aspect::selection);
}

void FormRenderer::DoubleClick(Grid& grid) {
  if (grid.onDblClick_) grid.onDblClick_(grid);
}

}  // namespace kvo
