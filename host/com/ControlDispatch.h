#pragma once

#include "common/values/Ascii.h"
#include "host/com/ControlState.h"
#include "host/com/Dispatch.h"
#include "host/com/Edge.h"
#include "host/com/RuntimeText.h"
#include "host/com/Text.h"
#include "host/com/TypeLibrary.h"

namespace kvo::com {

// IDispatch and IProvideRuntimeText: the runtime text, and the class's properties by name or by
// their fixed ids.
class ControlDispatch final : public ControlPart<IProvideRuntimeText> {
 public:
  using ControlPart::ControlPart;

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
    if (!Clear(count)) return E_POINTER;
    *count = 1;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept override {
    if (!Clear(info)) return E_POINTER;
    if (index != 0) return DISP_E_BADINDEX;
    return Boundary(state_.source,
                    [&] { *info = TypeInfoOf(ToGuid(state_.registered.interfaceId)).Detach(); });
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID,
                                          DISPID* members) noexcept override {
    return FindMembers(iid, names, count, members, [this](std::string_view name) -> DISPID {
      if (const PropertyRow* row = state_.Contract().FindProperty(name)) return row->id;
      return EqualIgnoringCase(name, kRuntimeTextMethod) ? kRuntimeTextId : DISPID_UNKNOWN;
    });
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID iid, LCID, WORD kind,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT*) noexcept override {
    const auto hold = state_.Hold();
    return InvokeMember(
        state_.source, iid, kind, parameters, result, exception, [&](const Invocation& call) {
          Control& control = *state_.control;
          if (member == kRuntimeTextId) {
            if (!call.IsCall()) return DISP_E_MEMBERNOTFOUND;
            if (!call.arguments.empty()) return DISP_E_BADPARAMCOUNT;
            call.Return(control.GetRuntimeText());
            return S_OK;
          }
          const PropertyRow* row = state_.FindProperty(member);
          if (row == nullptr) return DISP_E_MEMBERNOTFOUND;
          if (call.IsPut()) {
            // Only objects are assigned by reference; texts, numbers and flags by value.
            if (call.kind == DISPATCH_PROPERTYPUTREF && row->type != PropertyType::object)
              return DISP_E_MEMBERNOTFOUND;
            row->let(control, Variant(call.arguments[0]));
            state_.BoxChanged();
            return S_OK;
          }
          if (!call.IsGet()) return DISP_E_MEMBERNOTFOUND;
          if (call.arguments.empty()) {
            call.Return(row->get(control));
          } else {
            // With an index, reads an element of the object that the property holds.
            if (row->type != PropertyType::object || call.arguments.size() > 1)
              return DISP_E_BADPARAMCOUNT;
            call.Return(ToObject(row->get(control))->Item(call.arguments[0]));
          }
          return S_OK;
        });
  }
  HRESULT STDMETHODCALLTYPE GetRuntimeText(BSTR* text) noexcept override {
    if (!Clear(text)) return E_POINTER;
    return Boundary(state_.source,
                    [&] { *text = Bstr(state_.control->GetRuntimeText()).Detach(); });
  }
};

}  // namespace kvo::com
