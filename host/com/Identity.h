// What every creatable COM object of this library is: a count, an identity and interfaces, each
// family of which is a small class of its own (a Part). Can be aggregated.
#pragma once

#include "host/com/Module.h"
#include "host/com/Ole.h"
#include "host/com/Pointer.h"

namespace kvo::com {

class Identity {
 public:
  Identity(const Identity&) = delete;
  Identity& operator=(const Identity&) = delete;

  // Who this is to the world: the aggregating object, or this one itself. Not counted.
  IUnknown* Outer() const { return outer_; }
  // For the factory: the reference with which the object was born.
  IUnknown* Inner() { return &inner_; }

 protected:
  // `outer`: the aggregating object, or null.
  explicit Identity(IUnknown* outer) : outer_(outer == nullptr ? &inner_ : outer) {}
  virtual ~Identity() = default;

  // The interface of an id, not counted; null when there is none. IUnknown is not asked for.
  virtual void* Find(REFIID iid) = 0;

  // Nobody holds it any more.
  virtual void End() noexcept { delete this; }

 private:
  class InnerUnknown final : public IUnknown {
   public:
    explicit InnerUnknown(Identity& identity) : identity_(identity) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override {
      if (object == nullptr) return E_POINTER;
      *object = iid == IID_IUnknown ? this : identity_.Find(iid);
      if (*object == nullptr) return E_NOINTERFACE;
      // Parts count at the outer object.
      (iid == IID_IUnknown ? this : identity_.outer_)->AddRef();
      return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override {
      return static_cast<ULONG>(InterlockedIncrement(&count_));
    }
    ULONG STDMETHODCALLTYPE Release() noexcept override {
      const LONG left = InterlockedDecrement(&count_);
      if (left == 0) {
        count_ = kEnding;  // what ends may still be asked for and let go of
        identity_.End();
      }
      return static_cast<ULONG>(left);
    }

   private:
    static constexpr LONG kEnding = 1 << 30;
    Identity& identity_;
    LONG count_ = 1;
  };

  InnerUnknown inner_{*this};
  IUnknown* outer_;
  ModuleLock lock_;
};

// One family of interfaces of an object.
template <class... Interfaces>
class Part : public Interfaces... {
 public:
  explicit Part(Identity& identity) : identity_(identity) {}
  Part(const Part&) = delete;
  Part& operator=(const Part&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override {
    return identity_.Outer()->QueryInterface(iid, object);
  }
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return identity_.Outer()->AddRef(); }
  ULONG STDMETHODCALLTYPE Release() noexcept override { return identity_.Outer()->Release(); }

 protected:
  virtual ~Part() = default;

 private:
  Identity& identity_;
};

}  // namespace kvo::com
