#include "host/win32/SimpleViews.h"

#include <commctrl.h>

#include <algorithm>

#include "host/desktop/Measures.h"
#include "host/win32/Twips.h"
#include "host/win32/WindowText.h"

namespace kvo {
namespace {

// What a tab control draws around the panel that is open.
constexpr int kTabEdge = 30;

void Check(HWND button, bool checked) {
  SendMessageW(button, BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
}

}  // namespace

// Two clicks in quick succession are two clicks.
bool IsClick(WORD notification) {
  return notification == BN_CLICKED || notification == BN_DOUBLECLICKED;
}

// --- labels and boxes ---

LabelView::LabelView(Label& label, HWND parent, ViewHost& host)
    : ViewOf(label, host,
             MakeWindow(label, parent, WC_STATICW, {},
                        SS_NOPREFIX | (label.Wraps() ? SS_LEFT : SS_LEFTNOWORDWRAP))) {
  Show(Aspect::caption);
}

void LabelView::Show(Aspect) { SetWindowTextW(widget_, ToWindowText(control_.Caption()).c_str()); }

CheckBoxView::CheckBoxView(CheckBox& box, HWND parent, ViewHost& host)
    : ViewOf(box, host,
             MakeWindow(box, parent, WC_BUTTONW, ToWindowCaption(box.Caption()),
                        BS_CHECKBOX | BS_NOTIFY | WS_TABSTOP)) {
  Check(widget_, box.Value());
  host.Watch(widget_);
}

void CheckBoxView::Show(Aspect aspect) {
  if (aspect == Aspect::checked) Check(widget_, control_.Value());
}

void CheckBoxView::Command(WORD notification) {
  if (IsClick(notification)) host_.Act([this] { FormRenderer::Click(control_); });
}

FrameView::FrameView(const Frame& frame, HWND parent, ViewHost& host)
    : ViewOf(frame, host, nullptr) {
  if (!frame.Caption().empty()) {
    widget_ = MakeWindow(frame, parent, WC_BUTTONW, ToWindowCaption(frame.Caption()), BS_GROUPBOX);
    return;
  }
  widget_ = MakeWindow(frame, parent, WC_STATICW, {},
                       frame.At().height <= kThickestLine ? SS_ETCHEDHORZ : SS_ETCHEDFRAME);
  // Whatever room an etched line gives itself.
  const RECT at = PlaceOf(frame.At());
  SetWindowPos(widget_, nullptr, 0, 0, at.right - at.left, at.bottom - at.top,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

PictureView::PictureView(const PictureBox& picture, HWND parent, ViewHost& host)
    : ViewOf(picture, host,
             MakeWindow(picture, parent, WC_STATICW, {},
                        SS_ICON | SS_REALSIZECONTROL | SS_CENTERIMAGE)) {
  const int size = ToPixels(std::min(picture.At().width, picture.At().height));
  const HANDLE icon = LoadImageW(nullptr, reinterpret_cast<const wchar_t*>(IDI_INFORMATION),
                                 IMAGE_ICON, size, size, LR_SHARED);  // the system's
  SendMessageW(widget_, STM_SETICON, reinterpret_cast<WPARAM>(icon), 0);
}

// --- buttons ---

OptionButtonView::OptionButtonView(OptionButton& button, HWND parent, ViewHost& host)
    : ViewOf(button, host,
             MakeWindow(button, parent, WC_BUTTONW, ToWindowCaption(button.Caption()),
                        BS_RADIOBUTTON | BS_NOTIFY | WS_TABSTOP)) {
  Check(widget_, button.Value());
  host.Watch(widget_);
}

void OptionButtonView::Show(Aspect aspect) {
  if (aspect == Aspect::checked) Check(widget_, control_.Value());
}

void OptionButtonView::Command(WORD notification) {
  if (IsClick(notification) && !host_.IsEntering())
    host_.Act([this] { FormRenderer::Click(control_); });
}

ControlView::KeyUse OptionButtonView::Key(WPARAM key, HWND) {
  if (key == VK_UP || key == VK_LEFT) return Step(-1);
  if (key == VK_DOWN || key == VK_RIGHT) return Step(1);
  return KeyUse::none;
}

ControlView::KeyUse OptionButtonView::Step(int step) {
  if (OptionButton* next = NextOption(control_, step)) {
    SetFocus(host_.WidgetOf(*next));
    host_.Act([next] { FormRenderer::Click(*next); });
  }
  return KeyUse::done;
}

CommandButtonView::CommandButtonView(CommandButton& button, HWND parent, ViewHost& host)
    : ViewOf(
          button, host,
          MakeWindow(button, parent, WC_BUTTONW, ToWindowCaption(button.Caption()),
                     (button.DialogRole() == CommandButton::Role::acceptsDialog ? BS_DEFPUSHBUTTON
                                                                                : BS_PUSHBUTTON) |
                         BS_NOTIFY | WS_TABSTOP)) {
  host.Watch(widget_);
}

void CommandButtonView::Command(WORD notification) {
  if (IsClick(notification)) Press();
}

// The enter key presses the button on which it is pressed, not the dialog's.
ControlView::KeyUse CommandButtonView::Key(WPARAM key, HWND) {
  return key == VK_RETURN && control_.IsReachable() ? Press() : KeyUse::none;
}

ControlView::KeyUse CommandButtonView::Press() {
  host_.Act([this] { FormRenderer::Click(control_); });
  return KeyUse::done;
}

// --- tabs ---

TabControlView::TabControlView(TabControl& tabs, HWND parent, ViewHost& host)
    : ViewOf(tabs, host,
             MakeWindow(tabs, parent, WC_TABCONTROLW, {}, WS_TABSTOP | WS_CLIPCHILDREN)) {
  // The tabs and what is drawn around them are together as high as forms plan it.
  constexpr int kAroundTabs = 60;
  SendMessageW(widget_, TCM_SETITEMSIZE, 0, MAKELPARAM(0, ToPixels(kTabRowHeight - kAroundTabs)));
  host.Watch(widget_);
}

void TabControlView::Show(Aspect) {
  const std::size_t chosen = control_.SelectedTab();
  SendMessageW(widget_, TCM_SETCURSEL, chosen, 0);
  for (std::size_t tab = 0; tab < control_.Controls().size(); ++tab)
    ShowWindow(host_.WidgetOf(*control_.Controls()[tab]), tab == chosen ? SW_SHOWNA : SW_HIDE);
}

LRESULT TabControlView::Notify(NMHDR& notification) {
  if (notification.code != TCN_SELCHANGE) return 0;
  const auto tab = static_cast<std::size_t>(SendMessageW(widget_, TCM_GETCURSEL, 0, 0));
  host_.Act([&] { FormRenderer::SelectTab(control_, tab); });
  host_.Update([this] { Show(Aspect::selection); });
  return 0;
}

TabPanelView::TabPanelView(const TabPanel& panel, HWND tabs, ViewHost& host) : host_(host) {
  std::wstring caption = ToWindowCaption(panel.Caption());
  TCITEMW item{};
  item.mask = TCIF_TEXT;
  item.pszText = caption.data();
  SendMessageW(tabs, TCM_INSERTITEMW,
               static_cast<WPARAM>(SendMessageW(tabs, TCM_GETITEMCOUNT, 0, 0)),
               reinterpret_cast<LPARAM>(&item));
  RECT place = PlaceOf(panel.At());
  const int edge = ToPixels(kTabEdge);
  place.left += edge;
  place.right -= edge;
  place.bottom -= edge;
  Begin(tabs, {.style = WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
               .exStyle = WS_EX_CONTROLPARENT,
               .place = place});
}

POINT TabPanelView::Origin() const { return {-ToPixels(kTabEdge), 0}; }

LRESULT TabPanelView::Message(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  switch (message) {
    case WM_COMMAND:
    case WM_NOTIFY:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
      return SendMessageW(host_.Window(), message, wParam, lParam);
    default:
      return Default(message, wParam, lParam);
  }
}

// --- timers ---

void TimerView::Show(Aspect) {
  KillTimer(host_.Window(), Id());
  if (timer_.IsRunning() && timer_.Enabled())
    SetTimer(host_.Window(), Id(), static_cast<UINT>(std::max(0, timer_.Interval())), nullptr);
}

void TimerView::Ticked() {
  host_.Act([this] { FormRenderer::Tick(timer_); });
}

}  // namespace kvo
