#include "host/com/Dispatch.h"

#include "host/com/Edge.h"
#include "host/com/Text.h"
#include "host/com/Values.h"
#include "host/win32/WideText.h"

namespace kvo::com {
namespace {

// An assignment has one argument, which may be named as such; no other call has named arguments.
bool AreWellFormed(const DISPPARAMS& parameters, bool put) {
  if (parameters.cArgs > 0 && parameters.rgvarg == nullptr) return false;
  if (!put) return parameters.cNamedArgs == 0;
  if (parameters.cArgs != 1) return false;
  return parameters.cNamedArgs == 0 ||
         (parameters.cNamedArgs == 1 && parameters.rgdispidNamedArgs != nullptr &&
          parameters.rgdispidNamedArgs[0] == DISPID_PROPERTYPUT);
}

}  // namespace

void Fill(EXCEPINFO& exception, const Failure& failure) {
  exception = {};
  exception.scode = failure.code;
  exception.bstrSource = SysAllocString(failure.source.c_str());
  exception.bstrDescription = SysAllocString(failure.description.c_str());
}

void Invocation::Return(const Variant& value) const {
  if (result != nullptr) *result = ToVariant(value);
}

void Invocation::Return(const std::function<void(VARIANT&)>& make) const {
  if (result != nullptr) make(*result);
}

HRESULT FindMembers(REFIID iid, LPOLESTR* names, UINT count, DISPID* members,
                    const std::function<DISPID(std::string_view name)>& find) noexcept {
  if (members == nullptr) return E_POINTER;
  for (UINT i = 0; i < count; ++i) members[i] = DISPID_UNKNOWN;
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (names == nullptr) return E_POINTER;
  if (count == 0) return E_INVALIDARG;
  return Boundary({}, [&] {
    if (names[0] == nullptr) return E_POINTER;
    members[0] = find(FromWide(names[0]));
    return members[0] == DISPID_UNKNOWN || count > 1 ? DISP_E_UNKNOWNNAME : S_OK;
  });
}

HRESULT InvokeMember(std::wstring_view source, REFIID iid, WORD kind, DISPPARAMS* parameters,
                     VARIANT* result, EXCEPINFO* exception,
                     const std::function<HRESULT(const Invocation&)>& perform) noexcept {
  if (result != nullptr) VariantInit(result);
  if (exception != nullptr) *exception = {};
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (parameters == nullptr) return E_POINTER;
  try {
    Invocation call{kind, {}, result};
    if (!AreWellFormed(*parameters, call.IsPut())) return DISP_E_BADPARAMCOUNT;
    for (UINT i = parameters->cArgs; i > 0; --i)
      call.arguments.push_back(FromVariant(parameters->rgvarg[i - 1]));
    return perform(call);
  } catch (...) {
    const Failure failure = CaughtFailure(source);
    if (exception != nullptr) Fill(*exception, failure);
    Report(failure);
    return DISP_E_EXCEPTION;
  }
}

}  // namespace kvo::com
