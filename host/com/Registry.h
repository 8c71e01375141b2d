// The library's registry entries.
#pragma once

#include "host/com/Ole.h"

namespace kvo::com {

enum class RegisterFor { machine, user };

// Both are all or nothing as far as the registry allows: a failed registration is undone. Throw
// HostFailure with the reason.
void Register(RegisterFor whom);
void Unregister(RegisterFor whom);

}  // namespace kvo::com
