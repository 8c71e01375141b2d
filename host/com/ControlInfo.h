#pragma once

#include "host/com/ConnectionPoint.h"
#include "host/com/ControlState.h"
#include "host/com/Edge.h"
#include "host/com/Ole.h"
#include "host/com/Text.h"
#include "host/com/TypeLibrary.h"

namespace kvo::com {

// IProvideClassInfo2, ISupportErrorInfo and IConnectionPointContainer: describe the control to its
// host. A control raises no events.
class ControlInfo final
    : public ControlPart<IProvideClassInfo2, ISupportErrorInfo, IConnectionPointContainer> {
 public:
  explicit ControlInfo(ControlState& state) : ControlPart(state), changes_(state.identity, *this) {}

  // IProvideClassInfo
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) noexcept override {
    if (!Clear(info)) return E_POINTER;
    return Boundary(state_.source,
                    [&] { *info = TypeInfoOf(ToGuid(state_.registered.classId)).Detach(); });
  }
  // IProvideClassInfo2
  HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* guid) noexcept override {
    if (!Clear(guid)) return E_POINTER;
    // Without events there is no source interface.
    return kind == GUIDKIND_DEFAULT_SOURCE_DISP_IID ? E_FAIL : E_INVALIDARG;
  }

  // ISupportErrorInfo
  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) noexcept override {
    return Boundary(state_.source, [&] {
      const bool supported = iid == IID_IDispatch || iid == ToGuid(kRuntimeTextInterfaceId) ||
                             iid == ToGuid(state_.registered.interfaceId) ||
                             iid == IID_IPersistPropertyBag || iid == IID_IPersistStreamInit;
      return supported ? S_OK : S_FALSE;
    });
  }

  // IConnectionPointContainer
  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) noexcept override {
    if (!Clear(points)) return E_POINTER;
    return Boundary(state_.source, [&] { *points = NewConnectionPointList(&changes_); });
  }
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid,
                                                IConnectionPoint** point) noexcept override {
    if (!Clear(point)) return E_POINTER;
    if (iid != IID_IPropertyNotifySink) return CONNECT_E_NOCONNECTION;
    *point = &changes_;
    changes_.AddRef();
    return S_OK;
  }

 private:
  ConnectionPoint changes_;
};

}  // namespace kvo::com
