#include "host/win32/FormWindow.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "host/win32/EditViews.h"
#include "host/win32/Fonts.h"
#include "host/win32/GridView.h"
#include "host/win32/PropertyGridView.h"
#include "host/win32/SimpleViews.h"
#include "host/win32/Twips.h"
#include "host/win32/WindowText.h"

namespace kvo {
namespace {

// Messages that a form posts to itself.
enum : UINT {
  kReport = WM_APP + 0x4B0,  // failures are pending
  kCallLater,                // for the view of window wParam
  kFocusMoved,               // while windows were being updated
  kHandFocusOn,              // the focused window may be disabled or hidden
};

bool IsUsable(HWND window) { return IsWindowVisible(window) && IsWindowEnabled(window); }

bool IsShiftDown() { return GetKeyState(VK_SHIFT) < 0; }
bool IsPlainOrShifted() { return GetKeyState(VK_CONTROL) >= 0 && GetKeyState(VK_MENU) >= 0; }

}  // namespace

RECT PlaceOf(const Rect& at) {
  return {ToPixels(at.left), ToPixels(at.top), ToPixels(at.left + at.width),
          ToPixels(at.top + at.height)};
}

HWND MakeWindow(const FormControl& control, HWND parent, const wchar_t* className,
                const std::wstring& text, DWORD style, DWORD exStyle) {
  const RECT at = PlaceOf(control.At());
  const HWND window = CreateWindowExW(
      exStyle, className, text.c_str(), style | WS_CHILD | WS_CLIPSIBLINGS, at.left, at.top,
      at.right - at.left, at.bottom - at.top, parent, nullptr, ThisModule(), nullptr);
  SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(FontOf(control.TextFont())), FALSE);
  return window;
}

SIZE FormWindow::PixelSize(const Form& form) {
  return {ToPixels(form.FormSize().width), ToPixels(form.FormSize().height)};
}

FormWindow::FormWindow(Form& form, HWND parent) : FormViews(form) {
  constexpr DWORD kClasses = ICC_STANDARD_CLASSES | ICC_TAB_CLASSES | ICC_LISTVIEW_CLASSES;
  const INITCOMMONCONTROLSEX classes{sizeof(classes), kClasses};
  InitCommonControlsEx(&classes);
  const SIZE size = PixelSize(form);
  Begin(parent, {.text = ToWindowText(form.Caption()),
                 .style = WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
                 .exStyle = WS_EX_CONTROLPARENT,
                 .place = {0, 0, size.cx, size.cy}});
  Update([&] {
    Build(form, Handle());
    for (const auto& [control, view] : Views())
      if (view->IsBackground())
        SetWindowPos(view->Widget(), HWND_BOTTOM, 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    ShowAll();
  });
}

FormWindow::~FormWindow() {
  // Ignores messages during window destruction, which still moves the focus.
  EndActions();
  watched_.clear();
  End();
}

// --- making the windows ---

std::unique_ptr<ControlView> FormWindow::MakeView(FormControl& control, HWND parent) {
  return MakeOneOf<ControlView, HWND, ViewHost, LabelView, TextBoxView, ComboBoxView, CheckBoxView,
                   OptionButtonView, CommandButtonView, FrameView, PictureView, TabControlView,
                   TabPanelView, PropertyGridView, GridView, TimerView>(control, parent, *this);
}

void FormWindow::SetUp(FormControl&, ControlView& view, const ControlView* around) {
  const POINT origin = around == nullptr ? POINT{} : around->Origin();
  if (origin.x == 0 && origin.y == 0) return;
  const RECT at = PlaceInParent(view.Widget());
  SetWindowPos(view.Widget(), nullptr, at.left + origin.x, at.top + origin.y, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

HWND FormWindow::WidgetOf(const FormControl& control) const {
  return Handle() == nullptr ? nullptr : FormViews::WidgetOf(control);
}

ControlView* FormWindow::ViewAt(HWND window) const {
  const FormControl* control = ControlOf(window);
  return control == nullptr ? nullptr : &ViewOf(*control);
}

// --- from the form to the windows ---

void FormWindow::Update(const std::function<void()>& change) {
  if (Handle() != nullptr) ViewHost::Update(change);
}

void FormWindow::HandFocusOn() { PostMessageW(Handle(), kHandFocusOn, 0, 0); }

// --- from the user to the form ---

void FormWindow::CallForReport() { PostMessageW(Handle(), kReport, 0, 0); }

void FormWindow::CallLater(HWND window) {
  PostMessageW(Handle(), kCallLater, reinterpret_cast<WPARAM>(window), 0);
}

LRESULT FormWindow::Message(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  switch (message) {
    case WM_COMMAND:
      if (ControlView* view = ViewAt(reinterpret_cast<HWND>(lParam)); view && !IsUpdating())
        view->Command(HIWORD(wParam));
      return 0;
    case WM_NOTIFY:
      if (ControlView* view = ViewAt(reinterpret_cast<NMHDR*>(lParam)->hwndFrom))
        return view->Notify(*reinterpret_cast<NMHDR*>(lParam));
      break;
    case WM_CTLCOLOREDIT:
      if (ControlView* view = ViewAt(reinterpret_cast<HWND>(lParam)))
        if (const HBRUSH brush = view->Color(reinterpret_cast<HDC>(wParam)))
          return reinterpret_cast<LRESULT>(brush);
      break;
    case WM_TIMER:
      for (const auto& [control, view] : Views())
        if (reinterpret_cast<WPARAM>(view.get()) == wParam) view->Ticked();
      return 0;
    case kReport:
      ReportFailures();
      return 0;
    case kCallLater:
      if (ControlView* view = ViewAt(reinterpret_cast<HWND>(wParam))) view->Later();
      return 0;
    case kFocusMoved:
      if (IsChild(Handle(), GetFocus())) FocusEntered(GetFocus());
      return 0;
    case kHandFocusOn:
      FocusMayHaveGone();
      return 0;
    default:
      break;
  }
  return Default(message, wParam, lParam);
}

// --- the keyboard focus ---

void FormWindow::Watch(HWND window) {
  auto hook = [this, at = watched_.size(), window](UINT message, WPARAM wParam, LPARAM lParam) {
    const WindowHook& self = *watched_[at];
    if (message == WM_SETFOCUS) {
      LRESULT result = 0;
      {
        const CountUp entering(entering_);
        result = self.Next(message, wParam, lParam);
      }
      FocusEntered(window);
      return result;
    }
    const LRESULT result = self.Next(message, wParam, lParam);
    if (message == WM_KILLFOCUS) FocusLeft(reinterpret_cast<HWND>(wParam));
    return result;
  };
  watched_.push_back(std::make_unique<WindowHook>(window, std::move(hook)));
}

void FormWindow::FocusEntered(HWND window) {
  FormControl* control = ControlOf(window);
  if (control == nullptr || !control->TakesFocus() || control == Shown().Focused()) return;
  if (IsUpdating())
    PostMessageW(Handle(), kFocusMoved, 0, 0);
  else
    Act([&] { Focus(control); });
}

// The form keeps its focus while another window has the keyboard.
void FormWindow::FocusLeft(HWND to) {
  if (to == nullptr || Handle() == nullptr || to == Handle() || IsChild(Handle(), to)) return;
  if (GetAncestor(to, GA_ROOT) == GetAncestor(Handle(), GA_ROOT)) Act([this] { Focus(nullptr); });
}

// Moves the focus on when the focused window can no longer be used. By now, Windows has given it to
// no window, or to one around the form.
void FormWindow::FocusMayHaveGone() {
  const HWND focused = GetFocus();
  const FormControl* control = ControlOf(focused);
  if (control != nullptr ? control->IsReachable() && IsUsable(focused)
                         : focused != nullptr && focused != Handle() && !IsChild(focused, Handle()))
    return;
  if (!MoveFocus(false)) FocusFirst();
}

std::vector<FormControl*> FormWindow::TabStops(const FormControl* also) const {
  std::vector<FormControl*> stops;
  for (const auto& [control, view] : Views())
    if (control == also || IsTabStop(*control)) stops.push_back(control);
  return stops;
}

void FormWindow::Enter(const FormControl& control) { ViewOf(control).Enter(false); }

void FormWindow::FocusLast() {
  if (const auto stops = TabStops(nullptr); !stops.empty()) ViewOf(*stops.back()).Enter(true);
}

bool FormWindow::MoveFocus(bool backwards) {
  FormControl* now = ControlOf(GetFocus());
  if (now == nullptr) now = Shown().Focused();
  if (now != nullptr && now->IsReachable() && ViewOf(*now).MoveInside(backwards)) return true;
  std::vector<FormControl*> stops = TabStops(now);
  if (backwards) std::ranges::reverse(stops);
  auto next = stops.begin();
  if (now != nullptr) next = std::next(std::ranges::find(stops, now));
  if (next == stops.end()) return false;
  ViewOf(**next).Enter(backwards);
  return true;
}

bool FormWindow::TranslateKey(MSG& message) {
  const bool inside = message.hwnd == Handle() || IsChild(Handle(), message.hwnd);
  if (message.message != WM_KEYDOWN || Handle() == nullptr || !inside) return false;
  if (ControlView* view = ViewAt(message.hwnd)) {
    const ControlView::KeyUse use = view->Key(message.wParam, message.hwnd);
    if (use != ControlView::KeyUse::none) return use == ControlView::KeyUse::done;
  }
  switch (message.wParam) {
    case VK_TAB:
      return IsPlainOrShifted() && MoveFocus(IsShiftDown());
    case VK_RETURN:
      return PressButton(CommandButton::Role::acceptsDialog);
    case VK_ESCAPE:
      return PressButton(CommandButton::Role::cancelsDialog);
    default:
      return false;
  }
}

}  // namespace kvo
