// The state that a control object's interface families share.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/frame/Control.h"
#include "host/com/Classes.h"
#include "host/com/Identity.h"
#include "host/com/Ole.h"

namespace kvo::com {

struct ControlState {
  const RegisteredControl& registered;
  const std::shared_ptr<Control> control;
  const std::wstring source;  // of errors: "KVOPDesignObjects.DTCPrint"
  Identity& identity;

  // The control's site in its host; null outside of one.
  Pointer<IOleClientSite> site{};

  // Callbacks for when the box may have changed.
  std::vector<std::function<void()>> boxWatchers{};

  ControlState(const RegisteredControl& registeredControl, Identity& owner)
      : registered(registeredControl),
        control(registeredControl.contract().create()),
        source(ProgId(registeredControl.contract().name)),
        identity(owner) {}

  const ControlClass& Contract() const { return control->Class(); }
  // Finds a property by its dispatch id; null when there is none.
  const PropertyRow* FindProperty(DISPID member) const {
    for (const PropertyRow& row : Contract().properties)
      if (row.id == member) return &row;
    return nullptr;
  }
  void BoxChanged() const {
    for (const auto& watcher : boxWatchers) watcher();
  }
  // Keeps the control alive during a call, because the host may release it meanwhile.
  Pointer<IUnknown> Hold() const { return Pointer<IUnknown>(identity.Outer()); }
};

// One family of interfaces of a control.
template <class... Interfaces>
class ControlPart : public Part<Interfaces...> {
 public:
  explicit ControlPart(ControlState& state) : Part<Interfaces...>(state.identity), state_(state) {}

 protected:
  ControlState& state_;
};

}  // namespace kvo::com
