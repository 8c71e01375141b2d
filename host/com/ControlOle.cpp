#include "host/com/ControlOle.h"

#include "host/com/ControlView.h"
#include "host/com/Edge.h"
#include "host/com/Ole.h"
#include "host/com/Text.h"
#include "host/win32/WideText.h"

namespace kvo::com {

HRESULT ControlOle::SetClientSite(IOleClientSite* site) noexcept {
  const auto hold = state_.Hold();
  if (site == nullptr) inPlace_.Deactivate();
  state_.site = Pointer<IOleClientSite>(site);
  return S_OK;
}

HRESULT ControlOle::GetClientSite(IOleClientSite** site) noexcept {
  if (!Clear(site)) return E_POINTER;
  *site = Pointer<IOleClientSite>(state_.site).Detach();
  return S_OK;
}

HRESULT ControlOle::Close(DWORD saving) noexcept {
  const auto hold = state_.Hold();
  inPlace_.Deactivate();
  // Nobody is asked; a host that wants to ask does so before.
  if (saving != OLECLOSE_NOSAVE && state_.site && persistence_.IsDirty() == S_OK)
    state_.site->SaveObject();
  if (advises_) advises_->SendOnClose();
  return S_OK;
}

HRESULT ControlOle::GetMoniker(DWORD, DWORD, IMoniker** moniker) noexcept {
  return Clear(moniker) ? E_NOTIMPL : E_POINTER;
}

HRESULT ControlOle::GetClipboardData(DWORD, IDataObject** data) noexcept {
  return Clear(data) ? E_NOTIMPL : E_POINTER;
}

HRESULT ControlOle::DoVerb(LONG verb, MSG*, IOleClientSite*, LONG, HWND parent, LPCRECT) noexcept {
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
        if (verb < 0) return E_NOTIMPL;  // there is no window of its own to open
        inPlace_.Activate(true);
        return OLEOBJ_S_INVALIDVERB;
    }
  });
}

HRESULT ControlOle::EnumVerbs(IEnumOLEVERB** verbs) noexcept {
  if (!Clear(verbs)) return E_POINTER;
  return OleRegEnumVerbs(ToGuid(state_.registered.classId), verbs);
}

HRESULT ControlOle::GetUserClassID(CLSID* classId) noexcept {
  if (!Clear(classId)) return E_POINTER;
  return Boundary(state_.source, [&] { *classId = ToGuid(state_.registered.classId); });
}

HRESULT ControlOle::GetUserType(DWORD form, LPOLESTR* name) noexcept {
  if (!Clear(name)) return E_POINTER;
  return Boundary(state_.source, [&] {
    const std::string_view full = state_.Contract().description.In(UserLanguage());
    *name = TaskText(ToWide(form == USERCLASSTYPE_FULL ? full : state_.Contract().name));
  });
}

HRESULT ControlOle::SetExtent(DWORD aspect, SIZEL* size) noexcept {
  if (size == nullptr) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  const auto hold = state_.Hold();
  return Boundary(state_.source, [&] {
    state_.control->Resize();
    state_.BoxChanged();
  });
}

HRESULT ControlOle::GetExtent(DWORD aspect, SIZEL* size) noexcept {
  if (!Clear(size)) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  return Boundary(state_.source, [&] { *size = HimetricSize(state_.control->DesignTimeBox()); });
}

HRESULT ControlOle::Advise(IAdviseSink* sink, DWORD* cookie) noexcept {
  if (!Clear(cookie) || sink == nullptr) return E_POINTER;
  return Boundary(state_.source, [&] {
    if (!advises_) Check(CreateOleAdviseHolder(advises_.Receive()));
    return advises_->Advise(sink, cookie);
  });
}

HRESULT ControlOle::Unadvise(DWORD cookie) noexcept {
  return advises_ ? advises_->Unadvise(cookie) : OLE_E_NOCONNECTION;
}

HRESULT ControlOle::EnumAdvise(IEnumSTATDATA** advises) noexcept {
  if (!Clear(advises)) return E_POINTER;
  return Boundary(state_.source, [&] {
    if (!advises_) Check(CreateOleAdviseHolder(advises_.Receive()));
    return advises_->EnumAdvise(advises);
  });
}

HRESULT ControlOle::GetMiscStatus(DWORD aspect, DWORD* status) noexcept {
  if (!Clear(status)) return E_POINTER;
  if (aspect == DVASPECT_CONTENT) *status = kMiscStatus;
  return S_OK;
}

HRESULT ControlOle::GetControlInfo(CONTROLINFO* info) noexcept {
  if (info == nullptr) return E_POINTER;
  *info = {sizeof *info, nullptr, 0, 0};
  return S_OK;
}

}  // namespace kvo::com
