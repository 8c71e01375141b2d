// The type libraries, which are resources of the module.
#pragma once

#include "host/com/Ole.h"
#include "host/com/Pointer.h"

namespace kvo::com {

// Returns the type information of one of this library's interfaces or classes. Throws HostFailure
// when the type library cannot be read.
Pointer<ITypeInfo> TypeInfoOf(REFGUID id);

// The resource ids of the libraries; LoadTypeLib finds them as "PATH\NUMBER".
inline constexpr int kLibraryResource = 1;
inline constexpr int kFrameworkResource = 2;

}  // namespace kvo::com
