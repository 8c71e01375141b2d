#pragma once

#include "host/com/ControlInPlace.h"
#include "host/com/ControlState.h"
#include "host/com/ControlView.h"
#include "host/com/Edge.h"
#include "host/com/Ole.h"
#include "host/com/Text.h"
#include "host/win32/WideText.h"

namespace kvo::com {

// The status bits in the registry and in IOleObject::GetMiscStatus.
inline constexpr DWORD kMiscStatus = OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE |
                                     OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
                                     OLEMISC_SETCLIENTSITEFIRST;
// The registered verb, in addition to OLE's own.
inline constexpr LONG kPropertiesVerb = 1;

// IOleObject and IOleControl: the control inside a host.
class ControlOle final : public ControlPart<IOleObject, IOleControl> {
 public:
  ControlOle(ControlState& state, ControlInPlace& inPlace, IPersistStreamInit& persistence)
      : ControlPart(state), inPlace_(inPlace), persistence_(persistence) {}

  // IOleObject
  HRESULT STDMETHODCALLTYPE SetClientSite(IOleClientSite* site) noexcept override {
    const auto hold = state_.Hold();
    if (site == nullptr) inPlace_.Deactivate();
    state_.site = Pointer<IOleClientSite>(site);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetClientSite(IOleClientSite** site) noexcept override {
    if (!Clear(site)) return E_POINTER;
    *site = Pointer<IOleClientSite>(state_.site).Detach();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE SetHostNames(LPCOLESTR, LPCOLESTR) noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Close(DWORD saving) noexcept override {
    const auto hold = state_.Hold();
    inPlace_.Deactivate();
    // Saves without asking; a host that wants to ask does so before it closes the control.
    if (saving != OLECLOSE_NOSAVE && state_.site && persistence_.IsDirty() == S_OK)
      state_.site->SaveObject();
    if (advises_) advises_->SendOnClose();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE SetMoniker(DWORD, IMoniker*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker** moniker) noexcept override {
    return Clear(moniker) ? E_NOTIMPL : E_POINTER;
  }
  HRESULT STDMETHODCALLTYPE InitFromData(IDataObject*, BOOL, DWORD) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetClipboardData(DWORD, IDataObject** data) noexcept override {
    return Clear(data) ? E_NOTIMPL : E_POINTER;
  }
  HRESULT STDMETHODCALLTYPE DoVerb(LONG verb, MSG*, IOleClientSite*, LONG, HWND parent,
                                   LPCRECT) noexcept override {
    const auto hold = state_.Hold();
    return Boundary(state_.source, [&] {
      switch (verb) {
        case OLEIVERB_PROPERTIES:
        case kPropertiesVerb:
          inPlace_.ShowPages(parent);
          return S_OK;
        case OLEIVERB_INPLACEACTIVATE:
          inPlace_.Activate(false);
          return S_OK;
        case OLEIVERB_PRIMARY:
        case OLEIVERB_SHOW:
        case OLEIVERB_UIACTIVATE:
          inPlace_.Activate(true);
          return S_OK;
        case OLEIVERB_HIDE:
          inPlace_.Deactivate();
          return S_OK;
        case OLEIVERB_DISCARDUNDOSTATE:
          return S_OK;
        default:
          if (verb < 0) return E_NOTIMPL;  // cannot open a separate window
          inPlace_.Activate(true);
          return OLEOBJ_S_INVALIDVERB;
      }
    });
  }
  HRESULT STDMETHODCALLTYPE EnumVerbs(IEnumOLEVERB** verbs) noexcept override {
    if (!Clear(verbs)) return E_POINTER;
    return OleRegEnumVerbs(ToGuid(state_.registered.classId), verbs);
  }
  HRESULT STDMETHODCALLTYPE Update() noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE IsUpToDate() noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetUserClassID(CLSID* classId) noexcept override {
    if (!Clear(classId)) return E_POINTER;
    return Boundary(state_.source, [&] { *classId = ToGuid(state_.registered.classId); });
  }
  HRESULT STDMETHODCALLTYPE GetUserType(DWORD form, LPOLESTR* name) noexcept override {
    if (!Clear(name)) return E_POINTER;
    return Boundary(state_.source, [&] {
      const std::string_view full = state_.Contract().description.In(UserLanguage());
      *name = TaskText(ToWide(form == USERCLASSTYPE_FULL ? full : state_.Contract().name));
    });
  }
  // The captions determine the box's size; a requested size only triggers a new layout.
  HRESULT STDMETHODCALLTYPE SetExtent(DWORD aspect, SIZEL* size) noexcept override {
    if (size == nullptr) return E_POINTER;
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    const auto hold = state_.Hold();
    return Boundary(state_.source, [&] {
      state_.control->Resize();
      state_.BoxChanged();
    });
  }
  HRESULT STDMETHODCALLTYPE GetExtent(DWORD aspect, SIZEL* size) noexcept override {
    if (!Clear(size)) return E_POINTER;
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    return Boundary(state_.source, [&] { *size = HimetricSize(state_.control->DesignTimeBox()); });
  }
  HRESULT STDMETHODCALLTYPE Advise(IAdviseSink* sink, DWORD* cookie) noexcept override {
    if (!Clear(cookie) || sink == nullptr) return E_POINTER;
    return Boundary(state_.source, [&] {
      if (!advises_) Check(CreateOleAdviseHolder(advises_.Receive()));
      return advises_->Advise(sink, cookie);
    });
  }
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) noexcept override {
    return advises_ ? advises_->Unadvise(cookie) : OLE_E_NOCONNECTION;
  }
  HRESULT STDMETHODCALLTYPE EnumAdvise(IEnumSTATDATA** advises) noexcept override {
    if (!Clear(advises)) return E_POINTER;
    return Boundary(state_.source, [&] {
      if (!advises_) Check(CreateOleAdviseHolder(advises_.Receive()));
      return advises_->EnumAdvise(advises);
    });
  }
  HRESULT STDMETHODCALLTYPE GetMiscStatus(DWORD aspect, DWORD* status) noexcept override {
    if (!Clear(status)) return E_POINTER;
    if (aspect == DVASPECT_CONTENT) *status = kMiscStatus;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE SetColorScheme(LOGPALETTE*) noexcept override { return E_NOTIMPL; }

  // IOleControl. A control has no mnemonics and no events.
  HRESULT STDMETHODCALLTYPE GetControlInfo(CONTROLINFO* info) noexcept override {
    if (info == nullptr) return E_POINTER;
    *info = {sizeof *info, nullptr, 0, 0};
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE OnMnemonic(MSG*) noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnAmbientPropertyChange(DISPID) noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE FreezeEvents(BOOL) noexcept override { return S_OK; }

 private:
  ControlInPlace& inPlace_;
  IPersistStreamInit& persistence_;
  Pointer<IOleAdviseHolder> advises_;
};

}  // namespace kvo::com
