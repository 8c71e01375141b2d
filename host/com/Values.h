// The values of late binding and those of automation. Together with DispatchObject and
// ObjectDispatch this is the one bridge between objects here and objects outside.
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

// Empty, null and a missing argument are empty; whole numbers of up to 32 bits are integers, other
// numbers (currency and decimals too) numbers; a date is the text that the user's locale makes of
// it. RuntimeError 13 for what late binding does not carry, such as arrays.
Variant FromVariant(const VARIANT& value);
// The caller owns the result.
VARIANT ToVariant(const Variant& value);

// An object from outside as one of ours; null stays null. What once was one of ours is that again.
ObjectRef FromDispatch(IDispatch* object);
// One of ours for those outside. Asked twice for one object, it is the same identity as long as
// somebody holds it. Null stays null.
Pointer<IDispatch> ToDispatch(const ObjectRef& object);

// A control is more than a bridged object: its COM object says here who it is, as long as it lives.
void SetIdentity(const Object& object, IDispatch* identity);
void ForgetIdentity(const Object& object);

}  // namespace kvo::com
