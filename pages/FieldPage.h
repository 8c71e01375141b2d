// The page on which a field of the host's data is chosen: of the contact or of the order.
#pragma once

#include <string_view>

#include "common/forms/PropertyPage.h"

namespace kvo {

class FieldPage : public PropertyPage {
 protected:
  // All in which the pages differ: the list's name, and the collection of `Office` that fills it.
  struct Difference {
    std::string_view list;
    std::string_view fields;
  };
  explicit FieldPage(const Difference& difference)
      : PropertyPage("Allgemein"), difference_(difference) {}

 private:
  const Difference difference_;

 public:
  KVO_CONTROL(Label, lblField, .caption = "Auszugebendes Datenfeld:", .at = {240, 240, 5280, 240});
  // A row's key is the field's SQLName, its text the DisplayName.
  ComboBox cboFields{
      *this, difference_.list, {.at = {240, 480, 5280, 300}, .onChange = marksChanged}};

 private:
  // Nothing in it can fail: what cannot be read is left out.
  void SelectionChanged() override;
  // RuntimeError 91 when no field is chosen; nothing is written then.
  void ApplyChanges() override;
};

}  // namespace kvo
