#pragma once

#include "common/values/Object.h"
#include "host/com/Ole.h"
#include "host/com/Pointer.h"

namespace kvo::com {

// An automation object of others - a host's context object, a recordset, a selected control - as an
// Object. Members are found by name with every call, as late binding does. What the object answers
// by a failure is a RuntimeError where the system has a number for it, else a HostFailure.
class DispatchObject final : public Object {
 public:
  explicit DispatchObject(IDispatch* object) : object_(object) {}

  IDispatch* Dispatch() const { return object_.get(); }

  Variant Get(std::string_view name) override;
  void Let(std::string_view name, Variant value) override;
  Variant Call(std::string_view name, std::span<const Variant> arguments) override;
  Variant Item(const Variant& key) override;
  std::unique_ptr<Enumerator> Enumerate() override;
  // Pages of this library by their class names, others by their class ids in registry form.
  std::optional<std::vector<std::string>> PropertyPages() override;

 private:
  DISPID Find(std::string_view name) const;
  Variant Invoke(DISPID member, WORD kind, std::span<const Variant> arguments,
                 std::string_view about) const;
  // The same with the answer as it came; of an assignment there is none.
  void Invoke(DISPID member, WORD kind, std::span<const Variant> arguments, std::string_view about,
              VARIANT* answer) const;

  Pointer<IDispatch> object_;
};

}  // namespace kvo::com
