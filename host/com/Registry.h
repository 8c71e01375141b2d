// What the library writes into the registry, and takes out of it again.
#pragma once

#include "host/com/Ole.h"

namespace kvo::com {

enum class RegisterFor { machine, user };

// Both are all or nothing as far as the registry lets them: a registration that fails half way is
// taken back. HostFailure with the reason.
void Register(RegisterFor whom);
void Unregister(RegisterFor whom);

}  // namespace kvo::com
