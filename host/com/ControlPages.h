#pragma once

#include <algorithm>

#include "host/com/ControlState.h"
#include "host/com/Edge.h"
#include "host/com/Ole.h"
#include "host/com/Text.h"

namespace kvo::com {

// ISpecifyPropertyPages and IPerPropertyBrowsing.
class ControlPages final : public ControlPart<ISpecifyPropertyPages, IPerPropertyBrowsing> {
 public:
  using ControlPart::ControlPart;

  HRESULT STDMETHODCALLTYPE GetPages(CAUUID* pages) noexcept override {
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
  HRESULT STDMETHODCALLTYPE GetDisplayString(DISPID member, BSTR* text) noexcept override {
    if (!Clear(text)) return E_POINTER;
    return Boundary(state_.source, [&] {
      const PropertyRow* row = state_.FindProperty(member);
      if (row == nullptr) return DISP_E_MEMBERNOTFOUND;
      if (row->type == PropertyType::object) return S_FALSE;  // nothing to show
      *text = Bstr(ToText(row->get(*state_.control))).Detach();
      return S_OK;
    });
  }
  // Returns the first page that shows the property; PERPROP_E_NOPAGEAVAILABLE when none does, as
  // for all object properties.
  HRESULT STDMETHODCALLTYPE MapPropertyToPage(DISPID member, CLSID* page) noexcept override {
    if (!Clear(page)) return E_POINTER;
    return Boundary(state_.source, [&] {
      const PropertyRow* row = state_.FindProperty(member);
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
  // Lists of choices exist only on the pages.
  HRESULT STDMETHODCALLTYPE GetPredefinedStrings(DISPID, CALPOLESTR* texts,
                                                 CADWORD* cookies) noexcept override {
    return Clear(texts, cookies) ? E_NOTIMPL : E_POINTER;
  }
  HRESULT STDMETHODCALLTYPE GetPredefinedValue(DISPID, DWORD, VARIANT* value) noexcept override {
    return Clear(value) ? E_NOTIMPL : E_POINTER;
  }
};

}  // namespace kvo::com
