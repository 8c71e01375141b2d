#include "pages/FieldPage.h"

#include "common/values/RuntimeError.h"

namespace kvo {
namespace {

// Runs one step and ignores its errors.
template <class Step>
void IgnoringErrors(const Step& step) {
  try {
    step();
  } catch (const std::exception&) {
    // Without an Office, a collection or a readable field, a part of the list is missing.
  }
}

}  // namespace

void FieldPage::SelectionChanged() {
  cboFields.Clear();
  IgnoringErrors([&] {
    const ObjectRef office = ToObject(SelectedControls(0).Get("Office"));
    ForEach(*ToObject(office->Get(fields_)), [&](const Variant& element) {
      IgnoringErrors([&] {
        const ObjectRef field = ToObject(element);
        cboFields.AddItem(ToText(field->Get("SQLName")), ToText(field->Get("DisplayName")));
      });
    });
  });
  IgnoringErrors([&] { cboFields.Read(); });
}

void FieldPage::ApplyChanges() {
  if (cboFields.SelectedItem() == nullptr)
    throw RuntimeError(ErrorNumber::objectNotSet, std::string(cboFields.Name()));
  cboFields.Write();
  SelectedControls(0).Let("DisplayValue", cboFields.Text());
}

}  // namespace kvo
