#pragma once

#include "host/com/ControlState.h"
#include "host/com/Ole.h"

namespace kvo::com {

// ISpecifyPropertyPages and IPerPropertyBrowsing.
class ControlPages final : public Part<ISpecifyPropertyPages, IPerPropertyBrowsing> {
 public:
  explicit ControlPages(ControlState& state) : Part(state.identity), state_(state) {}

  HRESULT STDMETHODCALLTYPE GetPages(CAUUID* pages) noexcept override;

  HRESULT STDMETHODCALLTYPE GetDisplayString(DISPID member, BSTR* text) noexcept override;
  // The first of the control's pages that shows the property; PERPROP_E_NOPAGEAVAILABLE when none
  // does, as with every property that is an object.
  HRESULT STDMETHODCALLTYPE MapPropertyToPage(DISPID member, CLSID* page) noexcept override;
  // No property has a list of choices of its own; its page has.
  HRESULT STDMETHODCALLTYPE GetPredefinedStrings(DISPID, CALPOLESTR* texts,
                                                 CADWORD* cookies) noexcept override;
  HRESULT STDMETHODCALLTYPE GetPredefinedValue(DISPID, DWORD, VARIANT* value) noexcept override;

 private:
  ControlState& state_;
};

}  // namespace kvo::com
