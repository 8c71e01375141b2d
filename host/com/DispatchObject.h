#pragma once

#include "common/values/Object.h"
#include "host/com/Ole.h"
#include "host/com/Pointer.h"

namespace kvo::com {

// Wraps a foreign automation object, such as a host's context object, a recordset or a selected
// control. Looks up members by name on every call, as late binding does. Failures with a runtime
// error number become RuntimeErrors, others HostFailures.
class DispatchObject final : public Object {
 public:
  explicit DispatchObject(IDispatch* object) : object_(object) {}

  IDispatch* Dispatch() const { return object_.get(); }

  Variant Get(std::string_view name) override;
  void Let(std::string_view name, Variant value) override;
  Variant Call(std::string_view name, std::span<const Variant> arguments) override;
  Variant Item(const Variant& key) override;
  std::unique_ptr<Enumerator> Enumerate() override;
  // Returns this library's pages by class name, others by their class ids in registry form.
  std::optional<std::vector<std::string>> PropertyPages() override;

 private:
  DISPID Find(std::string_view name) const;
  Variant Invoke(DISPID member, WORD kind, std::span<const Variant> arguments,
                 std::string_view about) const;
  // The same, with the unconverted result. An assignment has none.
  void Invoke(DISPID member, WORD kind, std::span<const Variant> arguments, std::string_view about,
              VARIANT* answer) const;

  Pointer<IDispatch> object_;
};

}  // namespace kvo::com
