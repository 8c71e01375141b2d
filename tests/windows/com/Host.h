// A test host: loads the module from its file, and provides what hosts pass to controls.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "host/com/Classes.h"
#include "host/com/Edge.h"
#include "host/com/Ole.h"
#include "host/com/Pointer.h"
#include "host/com/RuntimeText.h"
#include "host/com/Text.h"
#include "host/com/Values.h"
#include "host/win32/WideText.h"

namespace kvo::com {

// Out parameters have this value before a call that must set them.
template <class T>
T* Poisoned() {
  return reinterpret_cast<T*>(static_cast<std::uintptr_t>(0xCC));
}
inline BSTR PoisonedText() { return reinterpret_cast<BSTR>(static_cast<std::uintptr_t>(0xCC)); }

// The loaded module. A failure to load it ends the program, because nothing could be tested.
class Dll {
 public:
  static Dll& Get();

  HRESULT GetClassObject(REFCLSID classId, REFIID iid, void** object) const {
    return getClassObject_(classId, iid, object);
  }
  bool CanUnload() const { return canUnload_() == S_OK; }
  std::wstring Path() const;

  // Returns a new object of a class; null if it lacks the interface.
  template <class T>
  Pointer<T> Make(std::string_view className, IUnknown* outer = nullptr) const {
    Pointer<T> made;
    const auto factory = Factory(className);
    EXPECT_TRUE(factory);
    if (factory)
      factory->CreateInstance(outer, __uuidof(T), reinterpret_cast<void**>(made.Receive()));
    return made;
  }
  Pointer<IClassFactory> Factory(std::string_view className) const;

 private:
  Dll();
  HMODULE module_;
  HRESULT(STDAPICALLTYPE* getClassObject_)(REFCLSID, REFIID, void**);
  HRESULT(STDAPICALLTYPE* canUnload_)();
};

CLSID ClassIdOf(std::string_view className);

// The parameters for tests of every class or page.
std::vector<std::string> ControlNames();
std::vector<std::string> PageNames();
inline std::string ParameterName(const testing::TestParamInfo<std::string>& info) {
  return info.param;
}

// IProvideRuntimeText has no __uuidof; its id is in the list of classes.
Pointer<IProvideRuntimeText> AsRuntimeText(IUnknown* object);
std::string RuntimeText(IUnknown* object);

// Binds late, as a host does.
std::shared_ptr<Object> Late(IUnknown* object);

// Registers the module's classes in this process during its lifetime, so that the system's frames
// and containers find them without a registry.
class KnownClasses {
 public:
  KnownClasses();
  KnownClasses(const KnownClasses&) = delete;
  KnownClasses& operator=(const KnownClasses&) = delete;
  ~KnownClasses();
  // Registers another class of the test.
  void Add(REFCLSID classId, IUnknown* factory);

 private:
  std::vector<DWORD> cookies_;
};

// Requires before and after every test that the module could be unloaded.
class ModuleTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;
};

// A COM object on a test's stack. Counts its references, and is destroyed with the test.
template <class... Interfaces>
class OnStack : public Interfaces... {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override {
    *object = nullptr;
    (..., (iid == __uuidof(Interfaces) ? void(*object = static_cast<Interfaces*>(this)) : void()));
    if (iid == IID_IUnknown) *object = First();
    if (*object == nullptr) *object = Further(iid);
    if (*object == nullptr) return E_NOINTERFACE;
    ++references;
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return static_cast<ULONG>(++references); }
  ULONG STDMETHODCALLTYPE Release() noexcept override { return static_cast<ULONG>(--references); }

  long references = 0;  // held by others

 protected:
  virtual ~OnStack() { EXPECT_EQ(references, 0) << "an object of the test was not released"; }
  virtual void* Further(REFIID) { return nullptr; }

 private:
  void* First() {
    void* first = nullptr;
    (..., (first == nullptr ? void(first = static_cast<Interfaces*>(this)) : void()));
    return first;
  }
};

// A host's property bag. Values are texts unless `raw` has another one for the key.
class TestBag final : public OnStack<IPropertyBag> {
 public:
  using Entry = std::pair<std::string, std::string>;
  TestBag() = default;
  explicit TestBag(std::vector<Entry> texts) : entries(std::move(texts)) {}

  std::vector<Entry> entries;
  std::map<std::string, Variant> raw;
  std::map<std::string, HRESULT> failing;  // the results of Read and Write for a key

  HRESULT STDMETHODCALLTYPE Read(LPCOLESTR name, VARIANT* value, IErrorLog*) noexcept override;
  HRESULT STDMETHODCALLTYPE Write(LPCOLESTR name, VARIANT* value) noexcept override;
};

class TestErrorLog final : public OnStack<IErrorLog> {
 public:
  struct Entry {
    std::string key;
    HRESULT code;
    std::string description;
    std::string source;
  };
  std::vector<Entry> entries;
  HRESULT STDMETHODCALLTYPE AddError(LPCOLESTR name, EXCEPINFO* exception) noexcept override;
};

// Loads a control from an empty bag, as hosts do first.
void LoadDefaults(IUnknown* control);

}  // namespace kvo::com
