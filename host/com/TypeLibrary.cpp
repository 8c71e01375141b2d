#include "host/com/TypeLibrary.h"

#include "host/com/Edge.h"
#include "host/com/Module.h"
#include "host/com/Ole.h"

namespace kvo::com {

Pointer<ITypeInfo> TypeInfoOf(REFGUID id) {
  Pointer<ITypeLib> library;
  Check(LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, library.Receive()));
  Pointer<ITypeInfo> info;
  Check(library->GetTypeInfoOfGuid(id, info.Receive()));
  return info;
}

}  // namespace kvo::com
