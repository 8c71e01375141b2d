// The host's context object, from which pages get fields and products.
#pragma once

#include "common/frame/Control.h"

namespace kvo {

inline bool HoldsOffice(const Control& control) {
  return control.Class().FindProperty("Office") != nullptr;
}

// Gives it to a control that has such a property. Without one, does nothing.
inline void GiveOffice(Control& control, const ObjectRef& office) {
  if (office != nullptr && HoldsOffice(control)) control.Let("Office", office);
}

}  // namespace kvo
