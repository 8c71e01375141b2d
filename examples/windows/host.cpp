// A host in C++: loads a control from keys, asks for its runtime text, tells what went wrong,
// stores the control into a bag and a stream, and shows one in a window of ATL's. With an argument
// it also opens the control's property pages, and prints the runtime text when they are closed.
//   x86_64-w64-mingw32-g++ -std=c++20 -municode -static host.cpp -lole32 -loleaut32 -luuid
#include <windows.h>

#include <oaidl.h>
#include <ocidl.h>
#include <olectl.h>

#include <cstdio>
#include <map>
#include <string>

// As DTCFramework.tlb has it; Visual C++ gets it from there with #import.
struct IProvideRuntimeText : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE GetRuntimeText(BSTR* text) = 0;
};
constexpr IID kRuntimeText = {
    0xC7D2F1A8, 0x6B4E, 0x4D35, {0x9E, 0x0A, 0x52, 0xB8, 0xD4, 0xF3, 0xC6, 0xE1}};

// The keys and values of one control. It lives on the stack: nobody counts.
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

  // E_INVALIDARG says that there is no such key: the control takes its default.
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

// Creates a control by its name and loads it.
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

// Prints the runtime text, or what is told about the failure.
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
    std::printf("0x%08lX, that is %ld, from %ls: %ls\n", static_cast<unsigned long>(code),
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

// The control names its pages itself; the system shows them in its frame.
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

// ATL makes a window a host: the window's text is the control's name.
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
    std::printf("in a window of ATL's: %s\n", active ? "active" : "not active");
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
