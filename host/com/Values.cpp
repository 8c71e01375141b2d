#include "host/com/Values.h"

#include <limits>
#include <mutex>
#include <unordered_map>

#include "common/values/RuntimeError.h"
#include "host/com/DispatchObject.h"
#include "host/com/Edge.h"
#include "host/com/ObjectDispatch.h"
#include "host/com/Text.h"
#include "host/win32/WideText.h"

namespace kvo::com {
namespace {

[[noreturn]] void Mismatch() { throw RuntimeError(ErrorNumber::typeMismatch); }

// Converts a value as automation does, in the user's locale.
AutoVariant& Converted(AutoVariant& into, const VARIANT& value, VARTYPE type) {
  if (FAILED(VariantChangeType(into.get(), const_cast<VARIANT*>(&value), 0, type))) Mismatch();
  return into;
}

double AsNumber(const VARIANT& value) {
  AutoVariant number;
  return (*Converted(number, value, VT_R8)).dblVal;
}

Variant Whole(double number) {
  if (number >= std::numeric_limits<std::int32_t>::min() &&
      number <= std::numeric_limits<std::int32_t>::max())
    return static_cast<std::int32_t>(number);
  return static_cast<double>(number);
}

Variant Referenced(const VARIANT& value) {
  AutoVariant inner;
  if (FAILED(VariantCopyInd(inner.get(), const_cast<VARIANT*>(&value)))) Mismatch();
  return FromVariant(*inner);
}

ObjectRef FromUnknown(IUnknown* object) {
  if (object == nullptr) return nullptr;
  const auto dispatch = Pointer<IDispatch>::Query(object);
  if (!dispatch) Mismatch();
  return FromDispatch(dispatch.get());
}

Variant OfObject(ObjectRef object) {
  return object == nullptr ? Variant() : Variant(std::move(object));
}

// --- identities ---

// The existing wrappers and controls. Several apartments may use it at once.
std::mutex identitiesMutex;
std::unordered_map<const Object*, IDispatch*>& Identities() {
  static std::unordered_map<const Object*, IDispatch*> identities;
  return identities;
}

Pointer<IDispatch> KnownIdentity(const Object& object) {
  const std::lock_guard lock(identitiesMutex);
  const auto found = Identities().find(&object);
  return found == Identities().end() ? Pointer<IDispatch>() : Pointer<IDispatch>(found->second);
}

}  // namespace

AutoVariant::AutoVariant(const Variant& value) : value_(ToVariant(value)) {}

Variant FromVariant(const VARIANT& value) {
  switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_ERROR:  // a missing argument
      return {};
    case VT_BOOL:
      return value.boolVal != VARIANT_FALSE;
    case VT_I1:
    case VT_UI1:
    case VT_I2:
    case VT_UI2:
    case VT_I4:
    case VT_INT:
    case VT_UI4:
    case VT_UINT:
    case VT_I8:
    case VT_UI8:
      return Whole(AsNumber(value));
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DECIMAL:
      return AsNumber(value);
    case VT_DATE: {
      AutoVariant text;
      return FromWide(ViewBstr((*Converted(text, value, VT_BSTR)).bstrVal));
    }
    case VT_BSTR:
      return FromWide(ViewBstr(value.bstrVal));
    case VT_DISPATCH:
      return OfObject(FromDispatch(value.pdispVal));
    case VT_UNKNOWN:
      return OfObject(FromUnknown(value.punkVal));
    default:
      if ((value.vt & VT_BYREF) != 0 && (value.vt & VT_ARRAY) == 0) return Referenced(value);
      Mismatch();
  }
}

VARIANT ToVariant(const Variant& value) {
  VARIANT out;
  VariantInit(&out);
  if (const bool* flag = value.If<bool>()) {
    out.vt = VT_BOOL;
    out.boolVal = *flag ? VARIANT_TRUE : VARIANT_FALSE;
  } else if (const std::int32_t* integer = value.If<std::int32_t>()) {
    out.vt = VT_I4;
    out.lVal = *integer;
  } else if (const double* number = value.If<double>()) {
    out.vt = VT_R8;
    out.dblVal = *number;
  } else if (const std::string* text = value.If<std::string>()) {
    out.bstrVal = Bstr(*text).Detach();
    out.vt = VT_BSTR;
  } else if (const ObjectRef* object = value.If<ObjectRef>()) {
    out.pdispVal = ToDispatch(*object).Detach();
    out.vt = VT_DISPATCH;
  }
  return out;
}

ObjectRef FromDispatch(IDispatch* object) {
  if (object == nullptr) return nullptr;
  if (ObjectRef ours = BridgedObject(object)) return ours;
  return std::make_shared<DispatchObject>(object);
}

Pointer<IDispatch> ToDispatch(const ObjectRef& object) {
  if (object == nullptr) return {};
  if (const auto* foreign = dynamic_cast<const DispatchObject*>(object.get()))
    return Pointer<IDispatch>(foreign->Dispatch());
  if (auto known = KnownIdentity(*object)) return known;
  return NewObjectDispatch(object);
}

void SetIdentity(const Object& object, IDispatch* identity) {
  const std::lock_guard lock(identitiesMutex);
  Identities()[&object] = identity;
}

void ForgetIdentity(const Object& object) {
  const std::lock_guard lock(identitiesMutex);
  Identities().erase(&object);
}

}  // namespace kvo::com
