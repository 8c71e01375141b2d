#pragma once

#include "host/com/ControlState.h"
#include "host/com/RuntimeText.h"

namespace kvo::com {

// IDispatch and IProvideRuntimeText: the class's properties under their frozen ids, by name or by
// id, and the runtime text.
class ControlDispatch final : public Part<IProvideRuntimeText> {
 public:
  explicit ControlDispatch(ControlState& state) : Part(state.identity), state_(state) {}

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID,
                                          DISPID* members) noexcept override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID iid, LCID, WORD kind,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT*) noexcept override;
  HRESULT STDMETHODCALLTYPE GetRuntimeText(BSTR* text) noexcept override;

 private:
  ControlState& state_;
};

// The property of a dispatch id; null when there is none.
const PropertyRow* FindProperty(const ControlClass& contract, DISPID member);

}  // namespace kvo::com
