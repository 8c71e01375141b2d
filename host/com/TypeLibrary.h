// The type libraries, which are bound into the module.
#pragma once

#include "host/com/Ole.h"
#include "host/com/Pointer.h"

namespace kvo::com {

// The type information of an interface or class of this library's. HostFailure when the module's
// type library cannot be read.
Pointer<ITypeInfo> TypeInfoOf(REFGUID id);

// Under which numbers the libraries are bound in; LoadTypeLib finds them as "PATH\NUMBER".
inline constexpr int kLibraryResource = 1;
inline constexpr int kFrameworkResource = 2;

}  // namespace kvo::com
