// Every registered page and the dialog.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/registration/classes.h"
#include "pages/frmExpressionBuilder.h"

namespace kvo {

struct NamedForm {
  std::string name;
  std::unique_ptr<Form> form;
};

inline std::vector<NamedForm> AllForms() {
  std::vector<NamedForm> forms;
  for (const RegisteredPage& page : RegisteredPages())
    forms.push_back({std::string(page.name), page.create()});
  forms.push_back({"frmExpressionBuilder", std::make_unique<frmExpressionBuilder>()});
  return forms;
}

// Returns the controls that the tab key visits. A group of options without a choice counts once, by
// its first option.
inline std::vector<FormControl*> TabStops(const Form& form) {
  std::vector<FormControl*> stops;
  bool option = false;
  for (FormControl* control : form.AllControls()) {
    const bool isOption = dynamic_cast<OptionButton*>(control) != nullptr;
    if (control->TakesFocus() && control->IsReachable() && !(isOption && option))
      stops.push_back(control);
    option = option || isOption;
  }
  return stops;
}

}  // namespace kvo
