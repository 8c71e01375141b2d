// A host in C++: loads a control from keys, prints its runtime text or its error, stores it in a
// property bag and a stream, and shows a control in an ATL window. With an argument, it also opens
// the property pages and prints the runtime text once they are closed.
//   x86_64-w64-mingw32-g++ -std=c++20 -municode -static host.cpp -lole32 -loleaut32 -luuid
#include <windows.h>

#include <oaidl.h>
#include <ocidl.h>
#include <olectl.h>

#include <cstdio>
#include <map>
#include <string>

// As in DTCFramework.tlb, which Visual C++ can read with #import.
struct IProvideRuntimeText : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE GetRuntimeText(BSTR* text) = 0;
};
constexpr IID kRuntimeText = {
    0xC7D2F1A8, 0x6B4E, 0x4D35, {0x9E, 0x0A, 0x52, 0xB8, 0xD4, 0xF3, 0xC6, 0xE1}};

// The keys and values of one control. Lives on the stack, so its reference count is fixed.
class Bag final : public IPropertyBag {
 public:
  std::map<std::wstring, std::wstring> values;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    const bool known = iid == IID_IUnknown || iid == IID_IPropertyBag;
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }

  // Returns E_INVALIDARG for a missing key: the control then takes its default.
  HRESULT STDMETHODCALLTYPE Read(LPCOLESTR key, VARIANT* value, IErrorLog*) override {
    const auto found = values.find(key);
    if (found == values.end()) return E_INVALIDARG;
    value->vt = VT_BSTR;
    value->bstrVal = SysAllocString(found->second.c_str());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Write(LPCOLESTR key, VARIANT* value) override {
    values[key] = value->bstrVal;  // always a text
    return S_OK;
  }
};

// Creates a control by its ProgID and loads it.
IPersistPropertyBag* Load(const wchar_t* progId, Bag& bag) {
  CLSID id{};
  IPersistPropertyBag* control = nullptr;
  if (FAILED(CLSIDFromProgID(progId, &id)) ||
      FAILED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IPersistPropertyBag,
                              reinterpret_cast<void**>(&control))))
    return nullptr;
  control->Load(&bag, nullptr);
  return control;
}

// Prints the runtime text, or the error information.
void Show(IUnknown* control) {
  IProvideRuntimeText* provider = nullptr;
  if (FAILED(control->QueryInterface(kRuntimeText, reinterpret_cast<void**>(&provider)))) return;
  BSTR text = nullptr;
  const HRESULT code = provider->GetRuntimeText(&text);
  IErrorInfo* info = nullptr;
  if (SUCCEEDED(code)) {
    std::printf("%ls\n", text);
  } else if (GetErrorInfo(0, &info) == S_OK) {
    BSTR source = nullptr;
    info->GetSource(&source);
    info->GetDescription(&text);
    std::printf("error 0x%08lX (%ld) from %ls: %ls\n", static_cast<unsigned long>(code),
                code & 0xFFFF, source, text);
    SysFreeString(source);
    info->Release();
  }
  SysFreeString(text);
  provider->Release();
}

void ShowStream(IUnknown* control) {
  IPersistStreamInit* persist = nullptr;
  IStream* stream = nullptr;
  HGLOBAL memory = nullptr;
  control->QueryInterface(IID_IPersistStreamInit, reinterpret_cast<void**>(&persist));
  CreateStreamOnHGlobal(nullptr, TRUE, &stream);
  persist->Save(stream, TRUE);
  ULARGE_INTEGER size{};
  persist->GetSizeMax(&size);
  GetHGlobalFromStream(stream, &memory);
  const auto* bytes = static_cast<const unsigned char*>(GlobalLock(memory));
  for (unsigned i = 0; i < size.QuadPart; ++i)
    std::printf(bytes[i] >= 0x20 && bytes[i] < 0x7F ? "%c" : "\\%02X", bytes[i]);
  std::printf("\n");
  GlobalUnlock(memory);
  stream->Release();
  persist->Release();
}

// Shows the pages that the control names in the system's property frame.
void ShowPages(IUnknown* control) {
  ISpecifyPropertyPages* specify = nullptr;
  CAUUID pages{};
  if (FAILED(
          control->QueryInterface(IID_ISpecifyPropertyPages, reinterpret_cast<void**>(&specify))))
    return;
  if (SUCCEEDED(specify->GetPages(&pages)) && pages.cElems > 0)
    OleCreatePropertyFrame(nullptr, 0, 0, L"Preis", 1, &control, pages.cElems, pages.pElems,
                           GetUserDefaultLCID(), 0, nullptr);
  CoTaskMemFree(pages.pElems);
  specify->Release();
}

// Uses ATL's host window, whose text is the control's ProgID.
void ShowInWindow(const wchar_t* progId) {
  const HMODULE atl = LoadLibraryW(L"atl.dll");
  if (atl == nullptr) return;
  const auto function = [atl](const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(atl, name));
  };
  reinterpret_cast<BOOL(WINAPI*)()>(function("AtlAxWinInit"))();
  const auto getControl =
      reinterpret_cast<HRESULT(WINAPI*)(HWND, IUnknown**)>(function("AtlAxGetControl"));
  const HWND window = CreateWindowExW(0, L"AtlAxWin", progId, WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0,
                                      0, 400, 100, nullptr, nullptr, nullptr, nullptr);
  IUnknown* control = nullptr;
  if (SUCCEEDED(getControl(window, &control))) {
    const bool active = GetWindow(window, GW_CHILD) != nullptr;
    std::printf("in an ATL window: %s\n", active ? "active" : "not active");
    Show(control);
    control->Release();
  }
  DestroyWindow(window);
}

int wmain(int count, wchar_t**) {
  OleInitialize(nullptr);
  Bag price;
  price.values = {{L"value", L"#order.total#"}, {L"format", L"#,##0.00"}};
  if (IPersistPropertyBag* control = Load(L"KVOPDesignObjects.DTCPrint", price)) {
    Show(control);
    ShowStream(control);
    Bag stored;
    control->Save(&stored, TRUE, FALSE);
    for (const auto& [key, value] : stored.values)
      std::printf("%ls = %ls\n", key.c_str(), value.c_str());
    if (count > 1) {
      ShowPages(control);
      Show(control);
    }
    control->Release();
  }
  Bag cell;
  cell.values = {{L"value", L"td"}, {L"attributes", L"align"}};
  if (IPersistPropertyBag* control = Load(L"KVOPDesignObjects.DTCElement", cell)) {
    Show(control);
    control->Release();
  }
  ShowInWindow(L"KVOPDesignObjects.DTCViewtracker");
  OleUninitialize();
  return 0;
}
