// Captions of buttons that most dialogs have.
#pragma once

#include "common/values/Localized.h"

namespace kvo {

inline constexpr Localized kOk = {"OK", "OK"};
inline constexpr Localized kCancel = {"Abbrechen", "Cancel"};

}  // namespace kvo
