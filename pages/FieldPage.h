// A page that chooses a field of the host's data: of the contact or of the order.
#pragma once

#include <string_view>

#include "common/forms/PageField.h"

namespace kvo {

class FieldPage : public PropertyPage {
 public:
  KVO_CONTROL(Label, lblField, .caption = "Auszugebendes Datenfeld:", .at = {240, 240, 5280, 240});
  // A row's key is the field's SQLName, its text the DisplayName.
  Field<ComboBox> cboFields;

 protected:
  // The list's name, and the collection of `Office` that fills it.
  FieldPage(std::string_view list, std::string_view fields)
      : PropertyPage("Allgemein"),
        cboFields(*this, list, Binding("Field"), {.at = {240, 480, 5280, 300}}),
        fields_(fields) {}

 private:
  // Never fails; leaves out what cannot be read.
  void SelectionChanged() override;
  // RuntimeError 91 when no field is chosen; nothing is written then.
  void ApplyChanges() override;

  const std::string_view fields_;
};

}  // namespace kvo
