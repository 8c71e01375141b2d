// The host's context object, which tells pages of fields and products.
#pragma once

#include "common/frame/Control.h"

namespace kvo {

inline bool HoldsOffice(const Control& control) {
  return control.Class().FindProperty("Office") != nullptr;
}

// Hands it to a control that holds one. None: the control stays as it is.
inline void GiveOffice(Control& control, const ObjectRef& office) {
  if (office != nullptr && HoldsOffice(control)) control.Let("Office", office);
}

}  // namespace kvo
