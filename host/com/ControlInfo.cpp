#include "host/com/ControlInfo.h"

#include "host/com/Edge.h"
#include "host/com/Text.h"
#include "host/com/TypeLibrary.h"

namespace kvo::com {

HRESULT ControlInfo::GetClassInfo(ITypeInfo** info) noexcept {
  if (!Clear(info)) return E_POINTER;
  return Boundary(state_.source,
                  [&] { *info = TypeInfoOf(ToGuid(state_.registered.classId)).Detach(); });
}

HRESULT ControlInfo::GetGUID(DWORD kind, GUID* guid) noexcept {
  if (!Clear(guid)) return E_POINTER;
  // Without events there is no source interface.
  return kind == GUIDKIND_DEFAULT_SOURCE_DISP_IID ? E_FAIL : E_INVALIDARG;
}

HRESULT ControlInfo::InterfaceSupportsErrorInfo(REFIID iid) noexcept {
  return Boundary(state_.source, [&] {
    const bool supported = iid == IID_IDispatch || iid == ToGuid(kRuntimeTextInterfaceId) ||
                           iid == ToGuid(state_.registered.interfaceId) ||
                           iid == IID_IPersistPropertyBag || iid == IID_IPersistStreamInit;
    return supported ? S_OK : S_FALSE;
  });
}

HRESULT ControlInfo::EnumConnectionPoints(IEnumConnectionPoints** points) noexcept {
  if (!Clear(points)) return E_POINTER;
  return Boundary(state_.source, [&] { *points = NewConnectionPointList(&changes_); });
}

HRESULT ControlInfo::FindConnectionPoint(REFIID iid, IConnectionPoint** point) noexcept {
  if (!Clear(point)) return E_POINTER;
  if (iid != IID_IPropertyNotifySink) return CONNECT_E_NOCONNECTION;
  *point = &changes_;
  changes_.AddRef();
  return S_OK;
}

}  // namespace kvo::com
