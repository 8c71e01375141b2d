#include "host/com/ControlPages.h"

#include <algorithm>

#include "host/com/ControlDispatch.h"
#include "host/com/Edge.h"
#include "host/com/Text.h"

namespace kvo::com {

HRESULT ControlPages::GetPages(CAUUID* pages) noexcept {
  if (!Clear(pages)) return E_POINTER;
  return Boundary(state_.source, [&] {
    const auto names = state_.Contract().pages;
    auto* ids =
        static_cast<GUID*>(CoTaskMemAlloc(std::max<std::size_t>(1, names.size()) * sizeof(GUID)));
    if (ids == nullptr) throw std::bad_alloc();
    std::ranges::transform(names, ids, PageClassId);
    *pages = {static_cast<ULONG>(names.size()), ids};
  });
}

HRESULT ControlPages::GetDisplayString(DISPID member, BSTR* text) noexcept {
  if (!Clear(text)) return E_POINTER;
  return Boundary(state_.source, [&] {
    const PropertyRow* row = FindProperty(state_.Contract(), member);
    if (row == nullptr) return DISP_E_MEMBERNOTFOUND;
    if (row->type == PropertyType::object) return S_FALSE;  // nothing to show
    *text = Bstr(ToText(row->get(*state_.control))).Detach();
    return S_OK;
  });
}

HRESULT ControlPages::MapPropertyToPage(DISPID member, CLSID* page) noexcept {
  if (!Clear(page)) return E_POINTER;
  return Boundary(state_.source, [&] {
    const PropertyRow* row = FindProperty(state_.Contract(), member);
    if (row == nullptr) return DISP_E_MEMBERNOTFOUND;
    if (row->type == PropertyType::object) return PERPROP_E_NOPAGEAVAILABLE;
    for (const std::string_view name : state_.Contract().pages) {
      if (!CreatePage(name)->Shows(row->name)) continue;
      *page = PageClassId(name);
      return S_OK;
    }
    return PERPROP_E_NOPAGEAVAILABLE;
  });
}

HRESULT ControlPages::GetPredefinedStrings(DISPID, CALPOLESTR* texts, CADWORD* cookies) noexcept {
  return Clear(texts, cookies) ? E_NOTIMPL : E_POINTER;
}

HRESULT ControlPages::GetPredefinedValue(DISPID, DWORD, VARIANT* value) noexcept {
  return Clear(value) ? E_NOTIMPL : E_POINTER;
}

}  // namespace kvo::com
