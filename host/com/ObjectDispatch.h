// Exposes one of our objects as `IDispatch`, with members by name.
#pragma once

#include "common/values/Object.h"
#include "host/com/Ole.h"
#include "host/com/Pointer.h"

namespace kvo::com {

Pointer<IDispatch> NewObjectDispatch(const ObjectRef& object);

// Returns the object behind an ObjectDispatch of this library; null for everything else.
ObjectRef BridgedObject(IDispatch* object);

}  // namespace kvo::com
