#include "host/com/ClassFactory.h"

#include "host/com/Classes.h"
#include "host/com/ControlObject.h"
#include "host/com/Counted.h"
#include "host/com/Edge.h"
#include "host/com/PageObject.h"

namespace kvo::com {
namespace {

// `Made` is a ControlObject or PageObject, `Registered` its row in the list of classes.
template <class Made, class Registered>
class Factory final : public Counted<IClassFactory> {
 public:
  explicit Factory(const Registered& registered) : registered_(registered) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid,
                                           void** object) noexcept override {
    if (!Clear(object)) return E_POINTER;
    if (outer != nullptr && iid != IID_IUnknown) return CLASS_E_NOAGGREGATION;
    return Boundary({}, [&] {
      const auto born = Pointer<IUnknown>::Attach((new Made(registered_, outer))->Inner());
      return born->QueryInterface(iid, object);
    });
  }

  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override {
    lock ? ModuleLock::Add() : ModuleLock::Remove();
    return S_OK;
  }

 private:
  const Registered& registered_;
};

template <class Made, class Registered>
HRESULT MakeFactory(const Registered& registered, REFIID iid, void** factory) {
  const auto made = Pointer<IClassFactory>::Attach(new Factory<Made, Registered>(registered));
  return made->QueryInterface(iid, factory);
}

}  // namespace

HRESULT GetFactory(REFCLSID classId, REFIID iid, void** factory) noexcept {
  if (!Clear(factory)) return E_POINTER;
  return Boundary({}, [&] {
    if (const RegisteredControl* control = FindControl(classId))
      return MakeFactory<ControlObject>(*control, iid, factory);
    if (const RegisteredPage* page = FindPage(classId))
      return MakeFactory<PageObject>(*page, iid, factory);
    return CLASS_E_CLASSNOTAVAILABLE;
  });
}

}  // namespace kvo::com
