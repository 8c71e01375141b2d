// The module's entry points.

#include "common/values/Ascii.h"
#include "common/values/Localized.h"
#include "host/com/ClassFactory.h"
#include "host/com/Classes.h"
#include "host/com/ComPlatform.h"
#include "host/com/Edge.h"
#include "host/com/Module.h"
#include "host/com/Ole.h"
#include "host/com/Registry.h"
#include "host/win32/Messages.h"
#include "host/win32/WideText.h"

namespace kvo::com {
namespace {

// Installs the platform once, before the first object is created.
void Prepare() {
  static ComPlatform platform;
  static const PlatformScope scope(platform);
}

}  // namespace
}  // namespace kvo::com

using namespace kvo::com;  // for the entry points, which are global

extern "C" {

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) {
    DisableThreadLibraryCalls(module);
    kvo::UserLanguage(kvo::DesktopLanguage());
  }
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, void** object) {
  const HRESULT prepared = Boundary(kLibrarySource, [] { Prepare(); });
  return FAILED(prepared) ? prepared : GetFactory(classId, iid, object);
}

STDAPI DllCanUnloadNow() { return ModuleLock::Count() == 0 ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() {
  return Boundary(kLibrarySource, [] { Register(RegisterFor::machine); });
}

STDAPI DllUnregisterServer() {
  return Boundary(kLibrarySource, [] { Unregister(RegisterFor::machine); });
}

// `command` is "user" (regsvr32 /n /i:user) to register for the current user only, which needs no
// administrator rights.
STDAPI DllInstall(BOOL install, PCWSTR command) {
  return Boundary(kLibrarySource, [&] {
    const bool user = command != nullptr && kvo::EqualIgnoringCase(kvo::FromWide(command), "user");
    if (command != nullptr && *command != L'\0' && !user) return E_INVALIDARG;
    const RegisterFor whom = user ? RegisterFor::user : RegisterFor::machine;
    install ? Register(whom) : Unregister(whom);
    return S_OK;
  });
}

}  // extern "C"
