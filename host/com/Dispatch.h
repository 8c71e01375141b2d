// The rules that every `IDispatch` of this library shares.
#pragma once

#include <concepts>
#include <functional>
#include <string_view>
#include <vector>

#include "common/values/Variant.h"
#include "host/com/Edge.h"
#include "host/com/Ole.h"

namespace kvo::com {

// One call of a member.
struct Invocation {
  WORD kind;                       // DISPATCH_...
  std::vector<Variant> arguments;  // in order; for an assignment, the new value
  VARIANT* result;                 // null when the caller ignores it

  bool IsPut() const { return (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0; }
  bool IsGet() const { return (kind & DISPATCH_PROPERTYGET) != 0; }
  bool IsCall() const { return (kind & DISPATCH_METHOD) != 0; }
  void Return(const Variant& value) const;
  void Return(const std::function<void(VARIANT&)>& make) const;
};

// Fills in a failure. The caller frees the texts.
void Fill(EXCEPINFO& exception, const Failure& failure);

// Implements GetIDsOfNames: `find` returns a member's id or DISPID_UNKNOWN. Parameters have no
// names.
HRESULT FindMembers(REFIID iid, LPOLESTR* names, UINT count, DISPID* members,
                    const std::function<DISPID(std::string_view name)>& find) noexcept;

// Implements Invoke: checks and converts the arguments, and converts exceptions from `perform` to
// EXCEPINFO.
HRESULT InvokeMember(std::wstring_view source, REFIID iid, WORD kind, DISPPARAMS* parameters,
                     VARIANT* result, EXCEPINFO* exception,
                     const std::function<HRESULT(const Invocation&)>& perform) noexcept;

}  // namespace kvo::com
