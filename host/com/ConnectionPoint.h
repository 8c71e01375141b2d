#pragma once

#include <map>

#include "host/com/Identity.h"
#include "host/com/Ole.h"

namespace kvo::com {

// The connection point for IPropertyNotifySink, which many containers and property browsers
// require. Never notifies: setters do not report changes, and the host learns of them when it
// applies the property pages.
class ConnectionPoint final : public IConnectionPoint {
 public:
  ConnectionPoint(Identity& identity, IConnectionPointContainer& container)
      : identity_(identity), container_(container) {}

  // Has its own COM identity but shares the object's reference count.
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override;
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return identity_.Outer()->AddRef(); }
  ULONG STDMETHODCALLTYPE Release() noexcept override { return identity_.Outer()->Release(); }

  HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) noexcept override;
  HRESULT STDMETHODCALLTYPE
  GetConnectionPointContainer(IConnectionPointContainer** container) noexcept override;
  HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) noexcept override;
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) noexcept override;
  HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) noexcept override;

 private:
  Identity& identity_;
  IConnectionPointContainer& container_;
  std::map<DWORD, Pointer<IPropertyNotifySink>> sinks_;
  DWORD lastCookie_ = 0;
};

// Returns an enumerator of the one point. The caller owns it.
IEnumConnectionPoints* NewConnectionPointList(IConnectionPoint* point);

}  // namespace kvo::com
