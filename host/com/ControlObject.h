// A control as a COM object. Each family of interfaces is a Part, and all share one state.
#pragma once

#include <memory>
#include <string>

#include "host/com/ControlDispatch.h"
#include "host/com/ControlInPlace.h"
#include "host/com/ControlInfo.h"
#include "host/com/ControlOle.h"
#include "host/com/ControlPages.h"
#include "host/com/ControlPersistence.h"
#include "host/com/ControlState.h"
#include "host/com/ControlView.h"
#include "host/com/Identity.h"

namespace kvo::com {

class ControlObject final : public Identity {
 public:
  ControlObject(const RegisteredControl& registered, IUnknown* outer);
  ~ControlObject() override;

 private:
  void* Find(REFIID iid) override;

  ControlState state_;
  ControlDispatch dispatch_;
  ControlPersistence persistence_;
  ControlInfo info_;
  ControlPages pages_;
  ControlView view_;
  ControlInPlace inPlace_;
  ControlOle ole_;
};

}  // namespace kvo::com
