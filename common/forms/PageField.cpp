#include "common/forms/PageField.h"

namespace kvo {

PageField::PageField(PropertyPage& page, Binding binding, std::function<void(Variant&&)> show,
                     std::function<Variant()> held)
    : page_(page), binding_(std::move(binding)), show_(std::move(show)), held_(std::move(held)) {
  page_.Add(*this);
}

Variant PageField::Get() const { return page_.SelectedControls(0).Get(binding_.property); }

void PageField::Read() const {
  Variant value = Get();
  if (binding_.shown) value = binding_.shown(ToText(std::move(value)));
  show_(std::move(value));
}

void PageField::Write() const {
  Variant value = Held();
  if (binding_.stored) value = binding_.stored(ToText(std::move(value)));
  page_.SelectedControls(0).Let(binding_.property, std::move(value));
}

void PageField::Put(EditBox& box, Variant&& value) { box.Text(ToText(std::move(value))); }

void PageField::Put(ComboBox& list, Variant&& value) {
  std::string text = ToText(std::move(value));
  const int row = list.RowOf(text);
  if (row == kNoRow && list.Editable()) return list.Text(std::move(text));
  list.ListIndex(row);
}

Variant PageField::Taken(const EditBox& box) { return box.Text(); }

Variant PageField::Taken(const ComboBox& list) {
  const ComboBox::Row* row = list.SelectedItem();
  return row != nullptr && row->key ? *row->key : list.Text();
}

}  // namespace kvo
