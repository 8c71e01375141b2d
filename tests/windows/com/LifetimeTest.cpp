#include <array>

#include "tests/windows/com/Host.h"
#include "tests/windows/win32/TestFrame.h"
#include "tests/windows/win32/WindowActions.h"

namespace kvo::com {
namespace {

class Lifetime : public ModuleTest {};

// Returns the bytes in use in all heaps. The process memory that the system reports grows by whole
// segments, which can hide a small leak.
std::size_t HeapInUse() {
  std::array<HANDLE, 64> heaps{};
  const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
  EXPECT_LE(count, heaps.size());
  std::size_t inUse = 0;
  for (DWORD at = 0; at < count && at < heaps.size(); ++at) {
    HeapLock(heaps[at]);
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heaps[at], &entry))
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) inUse += entry.cbData;
    HeapUnlock(heaps[at]);
  }
  return inUse;
}

void Cycle(std::string_view name) {
  const auto control = Dll::Get().Make<IPersistPropertyBag>(name);
  TestBag bag(
      std::vector<TestBag::Entry>{{"value", std::string(1000, 'x')}, {"format", "#,##0.00"}});
  ASSERT_EQ(control->Load(&bag, nullptr), S_OK);
  RuntimeText(control.get());
  TestBag stored;
  ASSERT_EQ(control->Save(&stored, TRUE, FALSE), S_OK);
}

TEST_F(Lifetime, TenThousandCyclesLeaveNothing) {
  constexpr int kCycles = 10'000;
  const auto controls = RegisteredControls();
  for (const RegisteredControl& control : controls) Cycle(control.contract().name);
  const std::size_t before = HeapInUse();
  for (int cycle = 0; cycle < kCycles; ++cycle)
    Cycle(controls[static_cast<std::size_t>(cycle) % controls.size()].contract().name);
  EXPECT_TRUE(Dll::Get().CanUnload());
  // A leak of one byte per cycle would exceed this.
  constexpr std::size_t kNoise = 4096;
  EXPECT_LT(HeapInUse(), before + kNoise);
}

TEST_F(Lifetime, PagesLeaveNothing) {
  for (int cycle = 0; cycle < 100; ++cycle)
    for (const RegisteredPage& page : RegisteredPages())
      ASSERT_TRUE(Dll::Get().Make<IPropertyPage2>(page.name));
  EXPECT_TRUE(Dll::Get().CanUnload());
}

// Releases its page as soon as that reports a change.
class ReleasingSite final : public OnStack<IPropertyPageSite> {
 public:
  Pointer<IPropertyPage2> page;

  HRESULT STDMETHODCALLTYPE OnStatusChange(DWORD) noexcept override {
    page = {};
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetLocaleID(LCID*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetPageContainer(IUnknown**) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG*) noexcept override { return S_FALSE; }
};

TEST_F(Lifetime, APageReleasedInItsOwnEventIsDestroyedAfterIt) {
  const TestFrame frame({400, 300});
  ReleasingSite site;
  site.page = Dll::Get().Make<IPropertyPage2>("propPrintGeneral");
  ASSERT_TRUE(site.page);
  ASSERT_EQ(site.page->SetPageSite(&site), S_OK);
  {
    const auto control = Dll::Get().Make<IPersistPropertyBag>("DTCPrint");
    LoadDefaults(control.get());
    IUnknown* object = control.get();
    ASSERT_EQ(site.page->SetObjects(1, &object), S_OK);
  }
  const RECT place{0, 0, 400, 300};
  ASSERT_EQ(site.page->Activate(frame.Window(), &place, FALSE), S_OK);
  ASSERT_EQ(site.page->Show(SW_SHOW), S_OK);
  ShowWindow(frame.Window(), SW_SHOW);
  ASSERT_EQ(site.page->EditProperty(1), S_OK);
  const HWND box = GetFocus();
  ASSERT_TRUE(Is(box, L"Edit"));
  SendMessageW(box, WM_CHAR, L'x', 0);
  EXPECT_FALSE(site.page);
  EXPECT_EQ(site.references, 0);
  EXPECT_TRUE(IsWindow(box));
  EXPECT_TRUE(PumpUntil([] { return Dll::Get().CanUnload(); }));
  EXPECT_FALSE(IsWindow(box));
}

TEST_F(Lifetime, AModuleCanBeUnloadedAndLoadedAgain) {
  const HMODULE module = LoadLibraryW(Dll::Get().Path().c_str());
  ASSERT_NE(module, nullptr);
  // A copy with another name is a separate module and can be unloaded.
  const std::wstring copy = Dll::Get().Path() + L".copy.dll";
  ASSERT_TRUE(CopyFileW(Dll::Get().Path().c_str(), copy.c_str(), FALSE));
  for (int round = 0; round < 3; ++round) {
    const HMODULE loaded = LoadLibraryW(copy.c_str());
    ASSERT_NE(loaded, nullptr);
    const auto getClass = reinterpret_cast<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>(
        reinterpret_cast<void*>(GetProcAddress(loaded, "DllGetClassObject")));
    const auto canUnload = reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(
        reinterpret_cast<void*>(GetProcAddress(loaded, "DllCanUnloadNow")));
    {
      Pointer<IClassFactory> factory;
      ASSERT_EQ(getClass(ClassIdOf("DTCIf"), IID_IClassFactory,
                         reinterpret_cast<void**>(factory.Receive())),
                S_OK);
      Pointer<IUnknown> control;
      ASSERT_EQ(factory->CreateInstance(nullptr, IID_IUnknown,
                                        reinterpret_cast<void**>(control.Receive())),
                S_OK);
      EXPECT_EQ(canUnload(), S_FALSE);
    }
    EXPECT_EQ(canUnload(), S_OK);
    EXPECT_TRUE(FreeLibrary(loaded));
    EXPECT_EQ(GetModuleHandleW(copy.c_str()), nullptr);
  }
  DeleteFileW(copy.c_str());
  FreeLibrary(module);
}

}  // namespace
}  // namespace kvo::com
