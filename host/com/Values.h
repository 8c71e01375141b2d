// Converts between Variant and VARIANT. Together with DispatchObject and ObjectDispatch, this is
// the only bridge between our objects and foreign ones.
#pragma once

#include "common/values/Object.h"
#include "host/com/Ole.h"
#include "host/com/Pointer.h"

namespace kvo::com {

// An owned VARIANT.
class AutoVariant {
 public:
  AutoVariant() { VariantInit(&value_); }
  explicit AutoVariant(const Variant& value);
  AutoVariant(const AutoVariant&) = delete;
  AutoVariant& operator=(const AutoVariant&) = delete;
  ~AutoVariant() { VariantClear(&value_); }

  VARIANT* get() { return &value_; }
  const VARIANT& operator*() const { return value_; }

 private:
  VARIANT value_;
};

// Empty, null and missing arguments become empty; integers that fit into 32 bits become integers,
// other numbers (also currency and decimals) doubles; a date becomes its text in the user's locale.
// Throws RuntimeError 13 for types that late binding does not support, such as arrays.
Variant FromVariant(const VARIANT& value);
// The caller owns the result.
VARIANT ToVariant(const Variant& value);

// Wraps a foreign object, or unwraps one of ours. Null stays null.
ObjectRef FromDispatch(IDispatch* object);
// Exposes one of our objects. While somebody holds the result, the same object always has the same
// identity. Null stays null.
Pointer<IDispatch> ToDispatch(const ObjectRef& object);

// Sets the COM object that represents an object until ForgetIdentity, such as a control's own.
void SetIdentity(const Object& object, IDispatch* identity);
void ForgetIdentity(const Object& object);

}  // namespace kvo::com
