// Controls in a host: the box, the window, the double click, and the system's own container.
#include <filesystem>
#include <functional>

#include "host/win32/WindowText.h"
#include "tests/windows/Callback.h"
#include "tests/windows/com/Host.h"
#include "tests/windows/win32/TestFrame.h"
#include "tests/windows/win32/WindowActions.h"
#include "tests/windows/win32/pictures/Png.h"

namespace kvo::com {
namespace {

// A host with space for one control.
class Site final
    : public OnStack<IOleClientSite, IOleInPlaceSite, IOleInPlaceFrame, IOleControlSite> {
 public:
  Site() { ShowWindow(frame_.Window(), SW_SHOW); }

  HWND Window() const { return frame_.Window(); }
  bool refuses = false;
  bool showsPagesItself = false;
  int framesAskedFor = 0;
  int saves = 0;
  std::vector<std::string> calls;
  RECT place{10, 10, 110, 40};
  IOleInPlaceObject* object = nullptr;  // the object to move when it requests a new size

  HRESULT STDMETHODCALLTYPE SaveObject() noexcept override {
    ++saves;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker**) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer** container) noexcept override {
    *container = nullptr;
    return E_NOINTERFACE;
  }
  HRESULT STDMETHODCALLTYPE ShowObject() noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL) noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() noexcept override { return E_NOTIMPL; }

  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) noexcept override {
    *window = frame_.Window();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CanInPlaceActivate() noexcept override {
    return refuses ? S_FALSE : S_OK;
  }
  HRESULT STDMETHODCALLTYPE OnInPlaceActivate() noexcept override { return Called("activate"); }
  HRESULT STDMETHODCALLTYPE OnUIActivate() noexcept override { return Called("ui-activate"); }
  HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame** frame,
                                             IOleInPlaceUIWindow** document, RECT* at, RECT* clip,
                                             OLEINPLACEFRAMEINFO*) noexcept override {
    *frame = this;
    AddRef();
    *document = nullptr;
    *at = place;
    *clip = {0, 0, 1000, 1000};
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Scroll(SIZE) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL) noexcept override {
    return Called("ui-deactivate");
  }
  HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() noexcept override { return Called("deactivate"); }
  HRESULT STDMETHODCALLTYPE DiscardUndoState() noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE DeactivateAndUndo() noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnPosRectChange(LPCRECT wanted) noexcept override {
    place = *wanted;
    if (object != nullptr) object->SetObjectRects(&place, &place);
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE GetBorder(RECT*) noexcept override { return INPLACE_E_NOTOOLSPACE; }
  HRESULT STDMETHODCALLTYPE RequestBorderSpace(LPCBORDERWIDTHS) noexcept override {
    return INPLACE_E_NOTOOLSPACE;
  }
  HRESULT STDMETHODCALLTYPE SetBorderSpace(LPCBORDERWIDTHS) noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE SetActiveObject(IOleInPlaceActiveObject* active,
                                            LPCOLESTR) noexcept override {
    return Called(active == nullptr ? "nobody active" : "active");
  }
  HRESULT STDMETHODCALLTYPE InsertMenus(HMENU, OLEMENUGROUPWIDTHS*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetMenu(HMENU, HOLEMENU, HWND) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE RemoveMenus(HMENU) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetStatusText(LPCOLESTR) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE EnableModeless(BOOL) noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG*, WORD) noexcept override { return S_FALSE; }

  HRESULT STDMETHODCALLTYPE OnControlInfoChanged() noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE LockInPlaceActive(BOOL) noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetExtendedControl(IDispatch** extended) noexcept override {
    *extended = nullptr;
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE TransformCoords(POINTL*, POINTF*, DWORD) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG*, DWORD) noexcept override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE OnFocus(BOOL) noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE ShowPropertyFrame() noexcept override {
    if (!showsPagesItself) return E_NOTIMPL;
    ++framesAskedFor;
    return S_OK;
  }

 private:
  HRESULT Called(const char* what) {
    calls.emplace_back(what);
    return S_OK;
  }
  void* Further(REFIID iid) override {
    return iid == IID_IOleWindow ? static_cast<IOleInPlaceSite*>(this) : nullptr;
  }
  TestFrame frame_{{400, 200}};
};

class Hosting : public ModuleTest {
 protected:
  ~Hosting() override { current_ = nullptr; }

  Pointer<IOleObject> Place(std::string_view className, Site& site, LONG verb) {
    auto control = Dll::Get().Make<IOleObject>(className);
    LoadDefaults(control.get());
    EXPECT_EQ(control->SetClientSite(&site), S_OK);
    EXPECT_EQ(control->DoVerb(verb, nullptr, &site, 0, site.Window(), &site.place), S_OK);
    return control;
  }

  static HWND WindowOf(IOleObject* control) {
    HWND window = nullptr;
    Pointer<IOleInPlaceObject>::Query(control)->GetWindow(&window);
    return window;
  }

  // Acts as the user as soon as a window with this title is active. Several calls apply one after
  // the other.
  void Meanwhile(std::wstring title, std::function<void(HWND)> action) {
    waiting_.emplace_back(std::move(title), std::move(action));
    current_ = this;
    if (waiting_.size() > 1) return;
    SetTimer(nullptr, 0, 20, Callback([](HWND, UINT, UINT_PTR id, DWORD) {
               if (current_ == nullptr || current_->waiting_.empty())
                 return void(KillTimer(nullptr, id));
               const HWND active = GetActiveWindow();
               if (active == nullptr ||
                   TextOf(active).find(current_->waiting_[0].first) == std::wstring::npos)
                 return;
               const auto now = std::move(current_->waiting_[0]);
               current_->waiting_.erase(current_->waiting_.begin());
               current_->seen.push_back(FromWide(TextOf(active)));
               now.second(active);
             }));
  }
  static void Cancel(HWND frame) { PostMessageW(GetDlgItem(frame, IDCANCEL), BM_CLICK, 0, 0); }
  static void PressButton(HWND box) {
    SendMessageW(FindWindowExW(box, nullptr, L"BUTTON", nullptr), BM_CLICK, 0, 0);
  }

  std::vector<std::string> seen;

 private:
  std::vector<std::pair<std::wstring, std::function<void(HWND)>>> waiting_;
  static Hosting* current_;
};
Hosting* Hosting::current_ = nullptr;

TEST_F(Hosting, AnActivatedControlsWindowIsAsLargeAsItsBox) {
  Site site;
  const auto control = Place("DTCPrint", site, OLEIVERB_INPLACEACTIVATE);
  const HWND window = WindowOf(control.get());
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(GetParent(window), site.Window());
  EXPECT_TRUE(IsWindowVisible(window));
  EXPECT_EQ(site.calls, std::vector<std::string>{"activate"});

  // Requests a new size when its box grows.
  const auto inPlace = Pointer<IOleInPlaceObject>::Query(control.get());
  site.object = inPlace.get();
  Late(control.get())->Let("DisplayValue", "ein Wert, der viel Platz braucht");
  RECT area{};
  GetClientRect(window, &area);
  SIZEL size{};
  EXPECT_EQ(control->GetExtent(DVASPECT_CONTENT, &size), S_OK);
  EXPECT_NEAR(area.right, MulDiv(size.cx, 96, 2540), 1);
  EXPECT_EQ(area.bottom, 26);
  site.object = nullptr;

  EXPECT_EQ(control->Close(OLECLOSE_NOSAVE), S_OK);
  EXPECT_FALSE(IsWindow(window));
  EXPECT_EQ(site.calls.back(), "deactivate");
  EXPECT_EQ(control->SetClientSite(nullptr), S_OK);
}

TEST_F(Hosting, TheFocusFollowsUiActivation) {
  Site site;
  const auto control = Place("DTCIf", site, OLEIVERB_UIACTIVATE);
  EXPECT_EQ(site.calls, (std::vector<std::string>{"activate", "ui-activate", "active"}));
  EXPECT_EQ(GetFocus(), WindowOf(control.get()));
  EXPECT_EQ(Pointer<IOleInPlaceObject>::Query(control.get())->UIDeactivate(), S_OK);
  EXPECT_EQ(site.calls.back(), "ui-deactivate");
  // A click restores the focus.
  SendMessageW(WindowOf(control.get()), WM_LBUTTONDOWN, MK_LBUTTON, 0);
  EXPECT_EQ(site.calls.back(), "active");
  EXPECT_EQ(control->DoVerb(OLEIVERB_HIDE, nullptr, &site, 0, nullptr, nullptr), S_OK);
  EXPECT_EQ(WindowOf(control.get()), nullptr);
  EXPECT_EQ(control->SetClientSite(nullptr), S_OK);
}

TEST_F(Hosting, ASiteMayRefuse) {
  Site site;
  site.refuses = true;
  const auto control = Dll::Get().Make<IOleObject>("DTCPrint");
  EXPECT_EQ(control->DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 0, nullptr, nullptr), E_UNEXPECTED);
  control->SetClientSite(&site);
  EXPECT_EQ(control->DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 0, nullptr, nullptr),
            OLE_E_NOT_INPLACEACTIVE);
  EXPECT_EQ(control->DoVerb(-99, nullptr, nullptr, 0, nullptr, nullptr), E_NOTIMPL);
  EXPECT_EQ(site.calls, std::vector<std::string>());
  control->SetClientSite(nullptr);
}

TEST_F(Hosting, DestroyingTheParentDestroysTheWindow) {
  Pointer<IOleObject> control;
  {
    Site site;
    control = Place("DTCPrint", site, OLEIVERB_INPLACEACTIVATE);
    DestroyWindow(site.Window());
    EXPECT_EQ(WindowOf(control.get()), nullptr);
    Late(control.get())->Let("Value", "noch da");
    EXPECT_EQ(control->SetClientSite(nullptr), S_OK);
  }
  EXPECT_EQ(RuntimeText(control.get()), "<kv:print value=\"noch da\"/>");
}

TEST_F(Hosting, ClosingAChangedControlSavesIt) {
  Site site;
  const auto control = Place("DTCPrint", site, OLEIVERB_INPLACEACTIVATE);
  EXPECT_EQ(control->Close(OLECLOSE_SAVEIFDIRTY), S_OK);
  EXPECT_EQ(site.saves, 0);
  Late(control.get())->Let("Value", "x");
  EXPECT_EQ(control->Close(OLECLOSE_SAVEIFDIRTY), S_OK);
  EXPECT_EQ(site.saves, 1);
  control->SetClientSite(nullptr);
}

TEST_F(Hosting, ADoubleClickOnTheContactFieldSaysYoAndOpensItsPages) {
  const KnownClasses known;
  Site site;
  const auto control = Place("DTCContact", site, OLEIVERB_INPLACEACTIVATE);
  Meanwhile(L"KVOPDesignObjects", [](HWND box) {
    std::string text;
    for (HWND label = nullptr; (label = FindWindowExW(box, label, L"STATIC", nullptr)) != nullptr;)
      text += FromWide(TextOf(label));
    EXPECT_EQ(text, "yo");
    PressButton(box);
  });
  Meanwhile(L"Kontaktfeld", Cancel);
  SendMessageW(WindowOf(control.get()), WM_LBUTTONDBLCLK, MK_LBUTTON, 0);
  ASSERT_EQ(seen.size(), 2u);
  EXPECT_EQ(seen[0], "KVOPDesignObjects");
  control->Close(OLECLOSE_NOSAVE);
  control->SetClientSite(nullptr);
}

TEST_F(Hosting, OtherControlsIgnoreADoubleClick) {
  const KnownClasses known;
  Site site;
  Meanwhile(L"DTC", Cancel);  // cancels a frame, should one open; its title is the class
  for (const RegisteredControl& registered : RegisteredControls()) {
    const std::string_view name = registered.contract().name;
    if (name == "DTCContact") continue;
    SCOPED_TRACE(name);
    const auto control = Place(name, site, OLEIVERB_INPLACEACTIVATE);
    const std::string before = RuntimeText(control.get());
    for (const bool hostHasFrame : {true, false}) {
      site.showsPagesItself = hostHasFrame;
      ClickAt(WindowOf(control.get()), {5, 5}, {});
      SendMessageW(WindowOf(control.get()), WM_LBUTTONDBLCLK, MK_LBUTTON, 0);
      SendMessageW(WindowOf(control.get()), WM_LBUTTONUP, 0, 0);
      PumpMessages();
      EXPECT_EQ(site.framesAskedFor, 0);
      ASSERT_TRUE(seen.empty());
    }
    EXPECT_EQ(RuntimeText(control.get()), before);
    EXPECT_EQ(Pointer<IPersistStreamInit>::Query(control.get())->IsDirty(), S_FALSE);
    control->Close(OLECLOSE_NOSAVE);
    control->SetClientSite(nullptr);
  }
}

TEST_F(Hosting, TheVerbOpensThePages) {
  const KnownClasses known;
  Site site;
  const auto control = Place("DTCPrint", site, OLEIVERB_INPLACEACTIVATE);
  Meanwhile(L"DTCPrint", Cancel);
  EXPECT_EQ(control->DoVerb(OLEIVERB_PROPERTIES, nullptr, &site, 0, site.Window(), nullptr), S_OK);
  EXPECT_EQ(seen.size(), 1u);
  // A host with its own frame shows that.
  site.showsPagesItself = true;
  EXPECT_EQ(control->DoVerb(OLEIVERB_PROPERTIES, nullptr, &site, 0, nullptr, nullptr), S_OK);
  EXPECT_EQ(site.framesAskedFor, 1);
  EXPECT_EQ(seen.size(), 1u);
  control->Close(OLECLOSE_NOSAVE);
  control->SetClientSite(nullptr);
}

// --- the picture ---

class ViewSink final : public OnStack<IAdviseSink> {
 public:
  int changes = 0;
  void STDMETHODCALLTYPE OnDataChange(FORMATETC*, STGMEDIUM*) noexcept override {}
  void STDMETHODCALLTYPE OnViewChange(DWORD, LONG) noexcept override { ++changes; }
  void STDMETHODCALLTYPE OnRename(IMoniker*) noexcept override {}
  void STDMETHODCALLTYPE OnSave() noexcept override {}
  void STDMETHODCALLTYPE OnClose() noexcept override {}
};

TEST_F(Hosting, ViewsOfTheBoxAreNotifiedOfChanges) {
  ViewSink sink;
  const auto view = Dll::Get().Make<IViewObject2>("DTCPrint");
  EXPECT_EQ(view->SetAdvise(DVASPECT_CONTENT, 0, &sink), S_OK);
  LoadDefaults(view.get());
  EXPECT_EQ(sink.changes, 1);
  Late(view.get())->Let("Value", "x");
  EXPECT_EQ(sink.changes, 2);
  DWORD aspects = 0;
  Pointer<IAdviseSink> told;
  EXPECT_EQ(view->GetAdvise(&aspects, nullptr, told.Receive()), S_OK);
  EXPECT_EQ(aspects, static_cast<DWORD>(DVASPECT_CONTENT));
  EXPECT_EQ(told.get(), &sink);
  told = {};
  EXPECT_EQ(view->SetAdvise(DVASPECT_CONTENT, 0, nullptr), S_OK);
  Late(view.get())->Let("Value", "y");
  EXPECT_EQ(sink.changes, 2);
}

std::size_t DarkPixels(const std::function<void(HDC)>& draw, SIZE size) {
  const HDC screen = GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(screen);
  const HBITMAP bitmap = CreateCompatibleBitmap(screen, size.cx, size.cy);
  const HGDIOBJ former = SelectObject(memory, bitmap);
  const RECT all{0, 0, size.cx, size.cy};
  FillRect(memory, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
  draw(memory);
  std::size_t dark = 0;
  for (int y = 0; y < size.cy; ++y)
    for (int x = 0; x < size.cx; ++x) dark += GetRValue(GetPixel(memory, x, y)) < 128 ? 1u : 0u;
  SelectObject(memory, former);
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  return dark;
}

TEST_F(Hosting, TheBoxIsDrawnAtAnyPlace) {
  const auto view = Dll::Get().Make<IViewObject2>("DTCPrint");
  LoadDefaults(view.get());
  Late(view.get())->Let("Value", "#order.total#");
  SIZEL extent{};
  ASSERT_EQ(view->GetExtent(DVASPECT_CONTENT, -1, nullptr, &extent), S_OK);
  const SIZE size{MulDiv(extent.cx, 96, 2540), MulDiv(extent.cy, 96, 2540)};
  const RECTL bounds{0, 0, size.cx, size.cy};
  const auto drawTo = [&](HDC to, const RECTL& where) {
    EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, to, &where, nullptr,
                         nullptr, 0),
              S_OK);
  };
  const std::size_t dark = DarkPixels([&](HDC to) { drawTo(to, bounds); }, size);
  EXPECT_GT(dark, 100u);
  // Draws with the system's own helper, and through a metafile.
  const std::size_t drawn = DarkPixels(
      [&](HDC to) {
        const RECT where{0, 0, size.cx, size.cy};
        EXPECT_EQ(OleDraw(view.get(), DVASPECT_CONTENT, to, &where), S_OK);
      },
      size);
  EXPECT_EQ(drawn, dark);
  const std::size_t played = DarkPixels(
      [&](HDC to) {
        const HDC meta = CreateEnhMetaFileW(to, nullptr, nullptr, nullptr);
        drawTo(meta, bounds);
        const HENHMETAFILE picture = CloseEnhMetaFile(meta);
        ENHMETAHEADER head{};
        GetEnhMetaFileHeader(picture, sizeof head, &head);
        const RECT where{head.rclBounds.left, head.rclBounds.top, head.rclBounds.right,
                         head.rclBounds.bottom};
        PlayEnhMetaFile(to, picture, &where);
        DeleteEnhMetaFile(picture);
      },
      size);
  EXPECT_GT(played, dark / 2);
}

// --- the system's container ---

TEST_F(Hosting, TheSystemsContainerHostsEveryControl) {
  const KnownClasses known;
  const HMODULE atl = LoadLibraryW(L"atl.dll");
  ASSERT_NE(atl, nullptr);
  const auto init = reinterpret_cast<BOOL(WINAPI*)()>(
      reinterpret_cast<void*>(GetProcAddress(atl, "AtlAxWinInit")));
  const auto get = reinterpret_cast<HRESULT(WINAPI*)(HWND, IUnknown**)>(
      reinterpret_cast<void*>(GetProcAddress(atl, "AtlAxGetControl")));
  ASSERT_TRUE(init());
  const auto controls = RegisteredControls();
  constexpr int kRow = 40;
  TestFrame frame({560, static_cast<int>(controls.size()) * kRow});
  ShowWindow(frame.Window(), SW_SHOW);
  std::vector<HWND> hosts;
  for (const RegisteredControl& registered : controls) {
    const std::wstring id = ToWide(registered.classId);
    const HWND host = CreateWindowExW(0, L"AtlAxWin", id.c_str(), WS_CHILD | WS_VISIBLE, 10,
                                      static_cast<int>(hosts.size()) * kRow + 5, 540, 32,
                                      frame.Window(), nullptr, nullptr, nullptr);
    ASSERT_NE(host, nullptr);
    hosts.push_back(host);
    Pointer<IUnknown> control;
    ASSERT_EQ(get(host, control.Receive()), S_OK) << registered.contract().name;
    LoadDefaults(control.get());
    EXPECT_EQ(RuntimeText(control.get()), [&] {
      const auto own = registered.contract().create();
      MemoryBag empty;
      own->ReadProperties(empty);
      return own->GetRuntimeText();
    }());
  }
  PumpMessages();
  for (std::size_t i = 0; i < hosts.size(); ++i) {
    // The control's window is a child of the container's, and shows something.
    HWND inside = GetWindow(hosts[i], GW_CHILD);
    ASSERT_NE(inside, nullptr) << controls[i].contract().name;
    RECT area{};
    GetClientRect(inside, &area);
    const HDC from = GetDC(inside);
    const SIZE size{area.right, area.bottom};
    RedrawWindow(inside, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    EXPECT_GT(
        DarkPixels([&](HDC to) { BitBlt(to, 0, 0, size.cx, size.cy, from, 0, 0, SRCCOPY); }, size),
        50u)
        << controls[i].contract().name;
    ReleaseDC(inside, from);
  }
  const std::filesystem::path folder =
      std::filesystem::path(KVO_SOURCE_DIR) / "build/screenshots/windows";
  std::filesystem::create_directories(folder);
  RECT area{};
  GetClientRect(frame.Window(), &area);
  const HDC from = GetDC(frame.Window());
  const HDC memory = CreateCompatibleDC(from);
  const HBITMAP bitmap = CreateCompatibleBitmap(from, area.right, area.bottom);
  const HGDIOBJ former = SelectObject(memory, bitmap);
  BitBlt(memory, 0, 0, area.right, area.bottom, from, 0, 0, SRCCOPY);
  SelectObject(memory, former);
  EXPECT_TRUE(WritePng(bitmap, folder / "AtlAxWin.png"));
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(frame.Window(), from);
  for (const HWND host : hosts) DestroyWindow(host);
  FreeLibrary(atl);
}

}  // namespace
}  // namespace kvo::com
