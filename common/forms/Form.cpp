#include "common/forms/Form.h"

#include "common/forms/FormRenderer.h"
#include "common/frame/Platform.h"

namespace kvo {
namespace {

void Collect(const Container& container, std::vector<FormControl*>& all) {
  for (FormControl* control : container.Controls()) {
    all.push_back(control);
    if (const auto* inner = dynamic_cast<const Container*>(control)) Collect(*inner, all);
  }
}

}  // namespace

void Form::ShowModal() {
  loaded_ = true;
  ThePlatform().ShowModal(*this);
  loaded_ = false;
}

void Form::Unload() {
  if (!loaded_) return;
  loaded_ = false;
  if (renderer_ != nullptr) renderer_->FormUnloaded();
}

std::vector<FormControl*> Form::AllControls() const {
  std::vector<FormControl*> all;
  Collect(*this, all);
  return all;
}

FormControl* Form::Find(std::string_view name, std::size_t index) const {
  for (FormControl* control : AllControls())
    if (control->Name() == name && index-- == 0) return control;
  return nullptr;
}

}  // namespace kvo
