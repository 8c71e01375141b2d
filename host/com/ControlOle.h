#pragma once

#include "host/com/ControlInPlace.h"
#include "host/com/ControlState.h"
#include "host/com/Ole.h"

namespace kvo::com {

// What a control tells about itself in the registry and by IOleObject::GetMiscStatus.
inline constexpr DWORD kMiscStatus = OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE |
                                     OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
                                     OLEMISC_SETCLIENTSITEFIRST;
// The verb of the registry, beside those that OLE defines.
inline constexpr LONG kPropertiesVerb = 1;

// IOleObject and IOleControl: the control inside a host.
class ControlOle final : public Part<IOleObject, IOleControl> {
 public:
  ControlOle(ControlState& state, ControlInPlace& inPlace, IPersistStreamInit& persistence)
      : Part(state.identity), state_(state), inPlace_(inPlace), persistence_(persistence) {}

  // IOleObject
  HRESULT STDMETHODCALLTYPE SetClientSite(IOleClientSite* site) noexcept override;
  HRESULT STDMETHODCALLTYPE GetClientSite(IOleClientSite** site) noexcept override;
  HRESULT STDMETHODCALLTYPE SetHostNames(LPCOLESTR, LPCOLESTR) noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Close(DWORD saving) noexcept override;
  HRESULT STDMETHODCALLTYPE SetMoniker(DWORD, IMoniker*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker** moniker) noexcept override;
  HRESULT STDMETHODCALLTYPE InitFromData(IDataObject*, BOOL, DWORD) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetClipboardData(DWORD, IDataObject** data) noexcept override;
  HRESULT STDMETHODCALLTYPE DoVerb(LONG verb, MSG*, IOleClientSite*, LONG, HWND parent,
                                   LPCRECT) noexcept override;
  HRESULT STDMETHODCALLTYPE EnumVerbs(IEnumOLEVERB** verbs) noexcept override;
  HRESULT STDMETHODCALLTYPE Update() noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE IsUpToDate() noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetUserClassID(CLSID* classId) noexcept override;
  HRESULT STDMETHODCALLTYPE GetUserType(DWORD form, LPOLESTR* name) noexcept override;
  // The box has the size of its captions; what the host would like is a reason to lay it out anew.
  HRESULT STDMETHODCALLTYPE SetExtent(DWORD aspect, SIZEL* size) noexcept override;
  HRESULT STDMETHODCALLTYPE GetExtent(DWORD aspect, SIZEL* size) noexcept override;
  HRESULT STDMETHODCALLTYPE Advise(IAdviseSink* sink, DWORD* cookie) noexcept override;
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) noexcept override;
  HRESULT STDMETHODCALLTYPE EnumAdvise(IEnumSTATDATA** advises) noexcept override;
  HRESULT STDMETHODCALLTYPE GetMiscStatus(DWORD aspect, DWORD* status) noexcept override;
  HRESULT STDMETHODCALLTYPE SetColorScheme(LOGPALETTE*) noexcept override { return E_NOTIMPL; }

  // IOleControl. A control has no mnemonics and no events.
  HRESULT STDMETHODCALLTYPE GetControlInfo(CONTROLINFO* info) noexcept override;
  HRESULT STDMETHODCALLTYPE OnMnemonic(MSG*) noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnAmbientPropertyChange(DISPID) noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE FreezeEvents(BOOL) noexcept override { return S_OK; }

 private:
  ControlState& state_;
  ControlInPlace& inPlace_;
  IPersistStreamInit& persistence_;
  Pointer<IOleAdviseHolder> advises_;
};

}  // namespace kvo::com
