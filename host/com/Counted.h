// A COM object with one interface, created with `new` and deleted by its last Release.
#pragma once

#include "host/com/Module.h"
#include "host/com/Ole.h"

namespace kvo::com {

template <class Interface>
class Counted : public Interface {
 public:
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    const bool known = iid == IID_IUnknown || iid == __uuidof(Interface) || Supports(iid);
    *object = known ? static_cast<Interface*>(this) : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() noexcept override {
    return static_cast<ULONG>(InterlockedIncrement(&count_));
  }
  ULONG STDMETHODCALLTYPE Release() noexcept override {
    const LONG left = InterlockedDecrement(&count_);
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }

 protected:
  Counted() = default;
  virtual ~Counted() = default;
  // Further interface ids that it accepts.
  virtual bool Supports(REFIID) { return false; }

 private:
  LONG count_ = 1;
  ModuleLock lock_;
};

}  // namespace kvo::com
