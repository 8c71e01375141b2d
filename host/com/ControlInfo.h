#pragma once

#include "host/com/ConnectionPoint.h"
#include "host/com/ControlState.h"
#include "host/com/Ole.h"

namespace kvo::com {

// IProvideClassInfo2, ISupportErrorInfo and IConnectionPointContainer: what a host asks about a
// control before it works with it. A control raises no events.
class ControlInfo final
    : public Part<IProvideClassInfo2, ISupportErrorInfo, IConnectionPointContainer> {
 public:
  explicit ControlInfo(ControlState& state)
      : Part(state.identity), state_(state), changes_(state.identity, *this) {}

  // IProvideClassInfo
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) noexcept override;
  // IProvideClassInfo2
  HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* guid) noexcept override;
  // ISupportErrorInfo
  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) noexcept override;
  // IConnectionPointContainer
  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) noexcept override;
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid,
                                                IConnectionPoint** point) noexcept override;

 private:
  ControlState& state_;
  ConnectionPoint changes_;
};

}  // namespace kvo::com
