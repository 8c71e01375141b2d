// The base of this library's creatable COM objects: a reference count, an identity and its
// interfaces, in families that are small classes of their own (Parts). Supports aggregation.
#pragma once

#include "host/com/Module.h"
#include "host/com/Ole.h"
#include "host/com/Pointer.h"

namespace kvo::com {

class Identity {
 public:
  Identity(const Identity&) = delete;
  Identity& operator=(const Identity&) = delete;

  // The controlling IUnknown: the aggregating object's, or this one's. Adds no reference.
  IUnknown* Outer() const { return outer_; }
  // The object's initial reference, for the factory.
  IUnknown* Inner() { return &inner_; }

 protected:
  // `outer` is the aggregating object, or null.
  explicit Identity(IUnknown* outer) : outer_(outer == nullptr ? &inner_ : outer) {}
  virtual ~Identity() = default;

  // Finds an interface without adding a reference; null when there is none. Not called for
  // IUnknown.
  virtual void* Find(REFIID iid) = 0;

  // Called after the last reference is released.
  virtual void End() noexcept { delete this; }

 private:
  class InnerUnknown final : public IUnknown {
   public:
    explicit InnerUnknown(Identity& identity) : identity_(identity) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override {
      if (object == nullptr) return E_POINTER;
      *object = iid == IID_IUnknown ? this : identity_.Find(iid);
      if (*object == nullptr) return E_NOINTERFACE;
      // Parts add references to the outer object.
      (iid == IID_IUnknown ? this : identity_.outer_)->AddRef();
      return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override {
      return static_cast<ULONG>(InterlockedIncrement(&count_));
    }
    ULONG STDMETHODCALLTYPE Release() noexcept override {
      const LONG left = InterlockedDecrement(&count_);
      if (left == 0) {
        count_ = kEnding;  // allows AddRef and Release during destruction
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

// One family of an object's interfaces.
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
