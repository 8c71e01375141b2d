#include "common/forms/PropertyPage.h"

#include "common/values/RuntimeError.h"

namespace kvo {

void PropertyPage::Select(std::vector<ObjectRef> objects) {
  selected_ = std::move(objects);
  if (!initialized_) Initialize();
  initialized_ = true;
  Changed(false);
  SelectionChanged();
}

void PropertyPage::Apply() {
  ApplyChanges();
  Changed(false);
}

Object& PropertyPage::SelectedControls(std::size_t index) const {
  if (index >= selected_.size()) throw RuntimeError(ErrorNumber::subscriptOutOfRange);
  if (selected_[index] == nullptr) throw RuntimeError(ErrorNumber::objectNotSet);
  return *selected_[index];
}

std::string PropertyPage::Read(std::string_view property) const {
  return ToText(SelectedControls(0).Get(property));
}

void PropertyPage::Write(std::string_view property, Variant value) const {
  SelectedControls(0).Let(property, std::move(value));
}

void PropertyPage::Fill(std::span<const TextField> fields) const {
  for (const TextField& field : fields) field.box.Text(Read(field.property));
}

void PropertyPage::Store(std::span<const TextField> fields) const {
  for (const TextField& field : fields) Write(field.property, field.box.Text());
}

void PropertyPage::Changed(bool bNewChanged) {
  if (changed_ == bNewChanged) return;
  changed_ = bNewChanged;
  if (site_ != nullptr) site_->StatusChanged(*this);
}

}  // namespace kvo
