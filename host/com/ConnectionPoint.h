#pragma once

#include <map>

#include "host/com/Identity.h"
#include "host/com/Ole.h"

namespace kvo::com {

// The connection point for IPropertyNotifySink. Containers and property browsers connect to it as a
// matter of course and give up on controls that have none. Nothing is ever sent: setters do not
// notify the host, which learns of changes when it applies the property pages.
class ConnectionPoint final : public IConnectionPoint {
 public:
  ConnectionPoint(Identity& identity, IConnectionPointContainer& container)
      : identity_(identity), container_(container) {}

  // A connection point has an identity of its own, and lives as long as its object.
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

// A list of the one point. The caller owns it.
IEnumConnectionPoints* NewConnectionPointList(IConnectionPoint* point);

}  // namespace kvo::com
