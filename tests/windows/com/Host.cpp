#include "tests/windows/com/Host.h"

#include <cstdio>
#include <cstdlib>

#include "host/com/DispatchObject.h"

namespace kvo::com {

Dll::Dll() : module_(LoadLibraryW(ToWide(KVO_MODULE).c_str())) {
  getClassObject_ = reinterpret_cast<decltype(getClassObject_)>(
      reinterpret_cast<void*>(GetProcAddress(module_, "DllGetClassObject")));
  canUnload_ = reinterpret_cast<decltype(canUnload_)>(
      reinterpret_cast<void*>(GetProcAddress(module_, "DllCanUnloadNow")));
  if (getClassObject_ != nullptr && canUnload_ != nullptr) return;
  std::fprintf(stderr, "cannot load %s\n", KVO_MODULE);
  std::exit(2);
}

Dll& Dll::Get() {
  static Dll dll;
  return dll;
}

std::wstring Dll::Path() const {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(module_, path, MAX_PATH);
  return path;
}

CLSID ClassIdOf(std::string_view className) {
  if (const RegisteredControl* control = FindControlByName(className))
    return ToGuid(control->classId);
  return PageClassId(className);
}

std::vector<std::string> ControlNames() {
  std::vector<std::string> names;
  for (const RegisteredControl& control : RegisteredControls())
    names.emplace_back(control.contract().name);
  return names;
}

std::vector<std::string> PageNames() {
  std::vector<std::string> names;
  for (const RegisteredPage& page : RegisteredPages()) names.emplace_back(page.name);
  return names;
}

Pointer<IClassFactory> Dll::Factory(std::string_view className) const {
  Pointer<IClassFactory> factory;
  GetClassObject(ClassIdOf(className), IID_IClassFactory,
                 reinterpret_cast<void**>(factory.Receive()));
  return factory;
}

Pointer<IProvideRuntimeText> AsRuntimeText(IUnknown* object) {
  Pointer<IProvideRuntimeText> found;
  object->QueryInterface(ToGuid(kRuntimeTextInterfaceId),
                         reinterpret_cast<void**>(found.Receive()));
  return found;
}

std::string RuntimeText(IUnknown* object) {
  Bstr text;
  EXPECT_EQ(AsRuntimeText(object)->GetRuntimeText(text.Receive()), S_OK);
  return text.Utf8();
}

std::shared_ptr<Object> Late(IUnknown* object) {
  return FromDispatch(Pointer<IDispatch>::Query(object).get());
}

KnownClasses::KnownClasses() {
  for (const RegisteredControl& control : RegisteredControls())
    Add(ToGuid(control.classId), Dll::Get().Factory(control.contract().name).get());
  for (const RegisteredPage& page : RegisteredPages())
    Add(ToGuid(page.classId), Dll::Get().Factory(page.name).get());
}

void KnownClasses::Add(REFCLSID classId, IUnknown* factory) {
  EXPECT_EQ(CoRegisterClassObject(classId, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                  &cookies_.emplace_back()),
            S_OK);
}

KnownClasses::~KnownClasses() {
  for (const DWORD cookie : cookies_) CoRevokeClassObject(cookie);
}

void ModuleTest::SetUp() { ASSERT_TRUE(Dll::Get().CanUnload()); }

void ModuleTest::TearDown() {
  // This thread's error information may still hold an object of the module.
  SetErrorInfo(0, nullptr);
  EXPECT_TRUE(Dll::Get().CanUnload()) << "an object of the module was not released";
}

HRESULT TestBag::Read(LPCOLESTR name, VARIANT* value, IErrorLog*) noexcept {
  const std::string key = FromWide(name);
  if (const auto fails = failing.find(key); fails != failing.end()) return fails->second;
  if (const auto special = raw.find(key); special != raw.end()) {
    *value = ToVariant(special->second);
    return S_OK;
  }
  for (const auto& [held, text] : entries) {
    if (held != key) continue;
    *value = ToVariant(Variant(text));
    return S_OK;
  }
  return E_INVALIDARG;
}

HRESULT TestBag::Write(LPCOLESTR name, VARIANT* value) noexcept {
  const std::string key = FromWide(name);
  if (const auto fails = failing.find(key); fails != failing.end()) return fails->second;
  EXPECT_EQ(value->vt, VT_BSTR) << key;
  entries.emplace_back(key, ToText(FromVariant(*value)));
  return S_OK;
}

HRESULT TestErrorLog::AddError(LPCOLESTR name, EXCEPINFO* exception) noexcept {
  entries.push_back({FromWide(name), exception->scode,
                     FromWide(ViewBstr(exception->bstrDescription)),
                     FromWide(ViewBstr(exception->bstrSource))});
  return S_OK;
}

void LoadDefaults(IUnknown* control) {
  TestBag empty;
  EXPECT_EQ(Pointer<IPersistPropertyBag>::Query(control)->Load(&empty, nullptr), S_OK);
}

}  // namespace kvo::com
