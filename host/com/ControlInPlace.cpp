#include "host/com/ControlInPlace.h"

#include "host/com/ControlView.h"
#include "host/com/Edge.h"
#include "host/com/Ole.h"
#include "host/win32/BoxPainter.h"
#include "host/win32/WideText.h"

namespace kvo::com {
namespace {

// The control's position as its site reports it: the windows around it, and its place in the
// innermost.
struct Surroundings {
  Pointer<IOleInPlaceFrame> frame;
  Pointer<IOleInPlaceUIWindow> document;
  RECT place{};
  RECT clip{};

  HRESULT Ask(IOleInPlaceSite* site) {
    OLEINPLACEFRAMEINFO keys{};
    keys.cb = sizeof keys;
    return site->GetWindowContext(frame.Receive(), document.Receive(), &place, &clip, &keys);
  }
};

}  // namespace

ControlInPlace::ControlInPlace(ControlState& state) : ControlPart(state) {
  state.boxWatchers.emplace_back([this] {
    if (Window() == nullptr) return;
    FitToBox();
    InvalidateRect(Window(), nullptr, TRUE);
  });
}

ControlInPlace::~ControlInPlace() { Deactivate(); }

void ControlInPlace::Activate(bool ui) {
  const auto hold = state_.Hold();
  if (Window() == nullptr) {
    window_.reset();
    auto site = Pointer<IOleInPlaceSite>::Query(state_.site.get());
    if (!site) throw HostFailure(E_UNEXPECTED);
    if (site->CanInPlaceActivate() != S_OK) throw HostFailure(OLE_E_NOT_INPLACEACTIVE);
    Check(site->OnInPlaceActivate());
    site_ = std::move(site);

    HWND parent = nullptr;
    Surroundings around;
    HRESULT code = site_->GetWindow(&parent);
    if (SUCCEEDED(code)) code = around.Ask(site_.get());
    if (SUCCEEDED(code)) {
      window_ = std::make_unique<ControlWindow>(*this, parent);
      if (Window() == nullptr) code = HRESULT_FROM_WIN32(GetLastError());
    }
    if (FAILED(code)) {
      Deactivate();
      Check(code);
    }
    Place(around.place, around.clip);
    FitToBox();
    ShowWindow(Window(), SW_SHOWNA);
    if (state_.site) state_.site->ShowObject();
  }
  if (ui) UiActivate();
}

void ControlInPlace::UiActivate() {
  if (uiActive_ || !site_) return;
  Check(site_->OnUIActivate());
  uiActive_ = true;
  SetFocus(Window());
  Surroundings around;
  if (FAILED(around.Ask(site_.get()))) return;
  const std::wstring name = ToWide(state_.Contract().name);
  if (around.frame) {
    around.frame->SetActiveObject(this, name.c_str());
    around.frame->SetBorderSpace(nullptr);
  }
  if (around.document) {
    around.document->SetActiveObject(this, name.c_str());
    around.document->SetBorderSpace(nullptr);
  }
}

void ControlInPlace::Deactivate() noexcept {
  if (uiActive_) UIDeactivate();
  window_.reset();
  const Pointer<IOleInPlaceSite> site = std::exchange(site_, {});
  if (site) site->OnInPlaceDeactivate();
}

void ControlInPlace::Place(const RECT& place, const RECT& clip) {
  place_ = place;
  RECT visible{};
  IntersectRect(&visible, &place, &clip);
  OffsetRect(&visible, -place.left, -place.top);
  const bool clipped = visible.left > 0 || visible.top > 0 ||
                       visible.right < place.right - place.left ||
                       visible.bottom < place.bottom - place.top;
  SetWindowRgn(Window(), clipped ? CreateRectRgnIndirect(&visible) : nullptr, TRUE);
  SetWindowPos(Window(), nullptr, place.left, place.top, place.right - place.left,
               place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

void ControlInPlace::FitToBox() {
  const SIZE size = BoxSize(state_.control->DesignTimeBox());
  const RECT wanted{place_.left, place_.top, place_.left + size.cx, place_.top + size.cy};
  if (!EqualRect(&wanted, &place_) && site_) site_->OnPosRectChange(&wanted);
}

void ControlInPlace::ShowPages(HWND owner) {
  const auto hold = state_.Hold();
  const auto host = Pointer<IOleControlSite>::Query(state_.site.get());
  if (host && host->ShowPropertyFrame() == S_OK) return;
  kvo::ShowPropertyPages(state_.control, state_.Contract().name,
                         reinterpret_cast<WindowHandle>(owner));
}

// --- the window ---

ControlInPlace::ControlWindow::ControlWindow(ControlInPlace& control, HWND parent)
    : control_(control) {
  Begin(parent, {.style = WS_CHILD | WS_CLIPSIBLINGS});
}

LRESULT ControlInPlace::ControlWindow::Message(UINT message, WPARAM wide, LPARAM lng) noexcept {
  switch (message) {
    case WM_PAINT:
      control_.Paint();
      return 0;
    case WM_ERASEBKGND: {
      RECT area{};
      GetClientRect(Handle(), &area);
      FillRect(reinterpret_cast<HDC>(wide), &area, GetSysColorBrush(COLOR_WINDOW));
      return 1;
    }
    case WM_LBUTTONDOWN: {
      const auto hold = control_.state_.Hold();
      Boundary(control_.state_.source, [this] { control_.UiActivate(); });
      return 0;
    }
    case WM_LBUTTONDBLCLK:
      control_.DoubleClicked();
      return 0;
    default:
      return Default(message, wide, lng);
  }
}

void ControlInPlace::Paint() {
  PAINTSTRUCT paint{};
  const HDC target = BeginPaint(Window(), &paint);
  Boundary(state_.source, [&] {
    const Box box = state_.control->DesignTimeBox();
    const SIZE size = BoxSize(box);
    DrawBox(target, box, {0, 0, size.cx, size.cy});
  });
  EndPaint(Window(), &paint);
}

void ControlInPlace::DoubleClicked() noexcept {
  const auto hold = state_.Hold();
  try {
    state_.control->DblClick(reinterpret_cast<WindowHandle>(Window()));
  } catch (...) {
    // There is no caller, so shows the failure to the user.
    const Failure failure = CaughtFailure(state_.source);
    MessageBoxW(Window(), failure.description.c_str(), failure.source.c_str(),
                MB_OK | MB_ICONEXCLAMATION);
  }
}

// --- interfaces ---

HRESULT ControlInPlace::GetWindow(HWND* window) noexcept {
  if (!Clear(window)) return E_POINTER;
  *window = Window();
  return *window == nullptr ? E_FAIL : S_OK;
}

HRESULT ControlInPlace::InPlaceDeactivate() noexcept {
  const auto hold = state_.Hold();
  Deactivate();
  return S_OK;
}

HRESULT ControlInPlace::UIDeactivate() noexcept {
  if (!uiActive_) return S_OK;
  uiActive_ = false;
  const auto hold = state_.Hold();
  Surroundings around;
  if (site_ && SUCCEEDED(around.Ask(site_.get()))) {
    if (around.frame) around.frame->SetActiveObject(nullptr, nullptr);
    if (around.document) around.document->SetActiveObject(nullptr, nullptr);
  }
  if (site_) site_->OnUIDeactivate(FALSE);
  return S_OK;
}

HRESULT ControlInPlace::SetObjectRects(LPCRECT place, LPCRECT clip) noexcept {
  if (place == nullptr) return E_POINTER;
  if (Window() == nullptr) return OLE_E_NOT_INPLACEACTIVE;
  Place(*place, clip == nullptr ? *place : *clip);
  return S_OK;
}

}  // namespace kvo::com
