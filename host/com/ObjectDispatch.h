// One of our own objects for those outside: `IDispatch` over Object, members by name.
#pragma once

#include "common/values/Object.h"
#include "host/com/Ole.h"
#include "host/com/Pointer.h"

namespace kvo::com {

Pointer<IDispatch> NewObjectDispatch(const ObjectRef& object);

// The object behind an ObjectDispatch of this library; null for everything else.
ObjectRef BridgedObject(IDispatch* object);

}  // namespace kvo::com
