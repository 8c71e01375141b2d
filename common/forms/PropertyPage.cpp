#include "common/forms/PropertyPage.h"

#include <algorithm>

#include "common/forms/PageField.h"
#include "common/values/Ascii.h"
#include "common/values/RuntimeError.h"

namespace kvo {

void PropertyPage::Select(std::vector<ObjectRef> objects) {
  selected_ = std::move(objects);
  if (!initialized_) Initialize();
  initialized_ = true;
  Changed(false);
  const struct FillingEnd {
    PropertyPage& page;
    ~FillingEnd() { page.isFilling_ = false; }
  } end{*this};
  isFilling_ = true;
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

bool PropertyPage::Shows(std::string_view property) const {
  return std::any_of(reads_.begin(), reads_.end(), [property](const PageField* field) {
    return EqualIgnoringCase(field->Bound().property, property);
  });
}

void PropertyPage::SelectionChanged() {
  for (const PageField* field : reads_) field->Read();
}

void PropertyPage::ApplyChanges() {
  for (const PageField* field : writes_) field->Write();
}

void PropertyPage::Add(const PageField& field) {
  // Before the field that it names, or at the end.
  reads_.insert(std::find(reads_.begin(), reads_.end(), field.Bound().readBefore), &field);
  writes_.insert(std::find(writes_.begin(), writes_.end(), field.Bound().writtenBefore), &field);
}

void PropertyPage::Changed(bool bNewChanged) {
  if (changed_ == bNewChanged) return;
  changed_ = bNewChanged;
  if (site_ != nullptr) site_->StatusChanged(*this);
}

}  // namespace kvo
