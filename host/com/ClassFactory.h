#pragma once

#include "host/com/Ole.h"

namespace kvo::com {

// The factory of a control or page, for DllGetClassObject.
HRESULT GetFactory(REFCLSID classId, REFIID iid, void** factory) noexcept;

}  // namespace kvo::com
