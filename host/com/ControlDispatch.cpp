#include "host/com/ControlDispatch.h"

#include "common/values/Ascii.h"
#include "host/com/Dispatch.h"
#include "host/com/Edge.h"
#include "host/com/Text.h"
#include "host/com/TypeLibrary.h"

namespace kvo::com {

const PropertyRow* FindProperty(const ControlClass& contract, DISPID member) {
  for (const PropertyRow& row : contract.properties)
    if (row.id == member) return &row;
  return nullptr;
}

HRESULT ControlDispatch::GetTypeInfoCount(UINT* count) noexcept {
  if (!Clear(count)) return E_POINTER;
  *count = 1;
  return S_OK;
}

HRESULT ControlDispatch::GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept {
  if (!Clear(info)) return E_POINTER;
  if (index != 0) return DISP_E_BADINDEX;
  return Boundary(state_.source,
                  [&] { *info = TypeInfoOf(ToGuid(state_.registered.interfaceId)).Detach(); });
}

HRESULT ControlDispatch::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID,
                                       DISPID* members) noexcept {
  return FindMembers(iid, names, count, members, [this](std::string_view name) -> DISPID {
    if (const PropertyRow* row = state_.Contract().FindProperty(name)) return row->id;
    return EqualIgnoringCase(name, kRuntimeTextMethod) ? kRuntimeTextId : DISPID_UNKNOWN;
  });
}

HRESULT ControlDispatch::Invoke(DISPID member, REFIID iid, LCID, WORD kind, DISPPARAMS* parameters,
                                VARIANT* result, EXCEPINFO* exception, UINT*) noexcept {
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
        const PropertyRow* row = FindProperty(state_.Contract(), member);
        if (row == nullptr) return DISP_E_MEMBERNOTFOUND;
        if (call.IsPut()) {
          // Texts, numbers and flags are assigned by value, never as a reference.
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
          // With an index, what is read is an element of the object that the property holds.
          if (row->type != PropertyType::object || call.arguments.size() > 1)
            return DISP_E_BADPARAMCOUNT;
          call.Return(ToObject(row->get(control))->Item(call.arguments[0]));
        }
        return S_OK;
      });
}

HRESULT ControlDispatch::GetRuntimeText(BSTR* text) noexcept {
  if (!Clear(text)) return E_POINTER;
  return Boundary(state_.source, [&] { *text = Bstr(state_.control->GetRuntimeText()).Detach(); });
}

}  // namespace kvo::com
