#include "host/com/Registry.h"

#include <string>
#include <vector>

#include "host/com/Classes.h"
#include "host/com/ControlOle.h"
#include "host/com/Edge.h"
#include "host/com/Module.h"
#include "host/com/Resources.h"
#include "host/com/TypeLibrary.h"
#include "host/win32/WideText.h"

namespace kvo::com {
namespace {

constexpr const wchar_t* kControlCategory = L"{40FC6ED4-2438-11CF-A3DB-080036F12502}";
// The system's marshaler for dual interfaces, which uses their type library.
constexpr const wchar_t* kAutomationMarshaler = L"{00020424-0000-0000-C000-000000000046}";
// 64-bit Windows keeps class ids separately for 32-bit and 64-bit programs, but shares ProgIDs and
// type libraries. The module that is unregistered last removes the shared keys.
constexpr const wchar_t* kPlatform = sizeof(void*) == 8 ? L"win64" : L"win32";
constexpr const wchar_t* kOtherPlatform = sizeof(void*) == 8 ? L"win32" : L"win64";

struct Value {
  std::wstring key;   // below the root for classes
  std::wstring name;  // empty for the key's default value
  std::wstring text;
};

// All values to write, and the keys to remove.
struct Entries {
  std::vector<Value> values;
  std::vector<std::wstring> ownKeys;
  std::vector<std::wstring> sharedKeys;  // shared with the module for the other platform
  void Add(const std::wstring& key, const std::wstring& text, const std::wstring& name = {}) {
    values.push_back({key, name, text});
  }
};

std::wstring Version(const TypeLibraryId& library) {
  return std::to_wstring(library.major) + L'.' + std::to_wstring(library.minor);
}

// Adds the entries that every creatable class has, and returns the class's key.
std::wstring AddClass(Entries& entries, std::string_view name, std::string_view classId) {
  const std::wstring progId = ProgId(name);
  const std::wstring id = ToWide(classId);
  std::wstring key = L"CLSID\\" + id;
  entries.ownKeys.push_back(key);
  entries.Add(key, progId);
  entries.Add(key + L"\\InprocServer32", ModulePath());
  entries.Add(key + L"\\InprocServer32", L"Apartment", L"ThreadingModel");
  entries.Add(key + L"\\ProgID", progId);
  entries.Add(key + L"\\TypeLib", ToWide(kLibrary.id));
  entries.Add(key + L"\\Version", Version(kLibrary));
  entries.sharedKeys.push_back(progId);
  entries.Add(progId, progId);
  entries.Add(progId + L"\\CLSID", id);
  return key;
}

void AddControl(Entries& entries, const RegisteredControl& control, int bitmap) {
  const std::wstring key = AddClass(entries, control.contract().name, control.classId);
  constexpr Localized kProperties = {"Eigenschaften...", "Properties..."};
  entries.Add(key + L"\\Control", {});
  entries.Add(key + L"\\Implemented Categories\\" + kControlCategory, {});
  entries.Add(key + L"\\MiscStatus", L"0");
  entries.Add(key + L"\\MiscStatus\\1", std::to_wstring(kMiscStatus));
  entries.Add(key + L"\\ToolboxBitmap32", ModulePath() + L", " + std::to_wstring(bitmap));
  entries.Add(key + L"\\Verb\\" + std::to_wstring(kPropertiesVerb),
              ToWide(Say(kProperties)) + L",0,2");
}

std::wstring PlatformKey(const TypeLibraryId& library, const wchar_t* platform) {
  return L"TypeLib\\" + ToWide(library.id) + L'\\' + Version(library) + L"\\0\\" + platform;
}

void AddTypeLibrary(Entries& entries, const TypeLibraryId& library, int resource) {
  const std::wstring own = L"TypeLib\\" + ToWide(library.id);
  const std::wstring key = own + L'\\' + Version(library);
  const std::wstring path = ModulePath();
  entries.sharedKeys.push_back(own);
  entries.ownKeys.push_back(PlatformKey(library, kPlatform));
  entries.Add(key, ToWide(library.name));
  entries.Add(PlatformKey(library, kPlatform), path + L'\\' + std::to_wstring(resource));
  entries.Add(key + L"\\FLAGS", L"0");
  entries.Add(key + L"\\HELPDIR", path.substr(0, path.find_last_of(L'\\')));
}

Entries AllEntries() {
  Entries entries;
  int bitmap = kFirstToolboxBitmap;
  for (const RegisteredControl& control : RegisteredControls())
    AddControl(entries, control, bitmap++);
  for (const RegisteredPage& page : RegisteredPages()) AddClass(entries, page.name, page.classId);
  AddTypeLibrary(entries, kLibrary, kLibraryResource);
  AddTypeLibrary(entries, kFramework, kFrameworkResource);
  const std::wstring contract = L"Interface\\" + ToWide(kRuntimeTextInterfaceId);
  entries.sharedKeys.push_back(contract);
  entries.Add(contract, ToWide(kRuntimeTextInterface));
  entries.Add(contract + L"\\ProxyStubClsid32", kAutomationMarshaler);
  entries.Add(contract + L"\\TypeLib", ToWide(kFramework.id));
  entries.Add(contract + L"\\TypeLib", Version(kFramework), L"Version");
  return entries;
}

void CheckRegistry(LSTATUS status) {
  if (status != ERROR_SUCCESS) throw HostFailure(HRESULT_FROM_WIN32(static_cast<DWORD>(status)));
}

class Key {
 public:
  explicit Key(HKEY key) : key_(key) {}
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  ~Key() { RegCloseKey(key_); }
  HKEY get() const { return key_; }

 private:
  HKEY key_;
};

HKEY Create(HKEY parent, const std::wstring& path) {
  HKEY key = nullptr;
  CheckRegistry(
      RegCreateKeyExW(parent, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr));
  return key;
}

Key OpenClasses(RegisterFor whom) {
  return Key(Create(whom == RegisterFor::machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER,
                    L"Software\\Classes"));
}

void Write(HKEY root, const Value& value) {
  const Key key(Create(root, value.key));
  CheckRegistry(RegSetValueExW(key.get(), value.name.empty() ? nullptr : value.name.c_str(), 0,
                               REG_SZ, reinterpret_cast<const BYTE*>(value.text.c_str()),
                               static_cast<DWORD>((value.text.size() + 1) * sizeof(wchar_t))));
}

// Removes a key if it is empty: among a user's own classes, nothing else may have used it.
void RemoveIfEmpty(HKEY root, const wchar_t* name) {
  HKEY opened = nullptr;
  if (RegOpenKeyExW(root, name, 0, KEY_READ, &opened) != ERROR_SUCCESS) return;
  DWORD keys = 0;
  DWORD values = 0;
  const LSTATUS status = RegQueryInfoKeyW(opened, nullptr, nullptr, nullptr, &keys, nullptr,
                                          nullptr, &values, nullptr, nullptr, nullptr, nullptr);
  RegCloseKey(opened);
  if (status == ERROR_SUCCESS && keys == 0 && values == 0) RegDeleteKeyW(root, name);
}

bool Exists(HKEY root, const std::wstring& path) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
  RegCloseKey(key);
  return true;
}

void Remove(HKEY root, const Entries& entries) {
  LSTATUS failure = ERROR_SUCCESS;
  const auto remove = [&](const std::vector<std::wstring>& keys) {
    for (const std::wstring& key : keys) {
      const LSTATUS status = RegDeleteTreeW(root, key.c_str());
      if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND) failure = status;
    }
  };
  remove(entries.ownKeys);
  if (!Exists(root, PlatformKey(kLibrary, kOtherPlatform))) remove(entries.sharedKeys);
  for (const wchar_t* parent : {L"CLSID", L"TypeLib", L"Interface"}) RemoveIfEmpty(root, parent);
  CheckRegistry(failure);
}

}  // namespace

void Register(RegisterFor whom) {
  const Key root = OpenClasses(whom);
  const Entries entries = AllEntries();
  try {
    for (const Value& value : entries.values) Write(root.get(), value);
  } catch (const HostFailure&) {
    try {
      Remove(root.get(), entries);
    } catch (const HostFailure&) {
      // Leaves what cannot be removed, and reports the first failure.
    }
    throw;
  }
}

void Unregister(RegisterFor whom) { Remove(OpenClasses(whom).get(), AllEntries()); }

}  // namespace kvo::com
