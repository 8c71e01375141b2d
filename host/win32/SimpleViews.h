// The views of labels, frames, pictures, buttons, tabs and timers.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <algorithm>

#include "host/desktop/Measures.h"
#include "host/win32/ControlView.h"
#include "host/win32/OwnWindow.h"
#include "host/win32/Twips.h"
#include "host/win32/WindowText.h"

namespace kvo {

// --- labels and boxes ---

class LabelView final : public WindowView<Label> {
 public:
  LabelView(Label& label, HWND parent, ViewHost& host)
      : ViewOf(label, host,
               MakeWindow(label, parent, WC_STATICW, {},
                          SS_NOPREFIX | (label.Wraps() ? SS_LEFT : SS_LEFTNOWORDWRAP))) {
    Show(Aspect::caption);
  }
  void Show(Aspect) override { SetWindowTextW(widget_, ToWindowText(control_.Caption()).c_str()); }
};

class FrameView final : public WindowView<const Frame> {
 public:
  FrameView(const Frame& frame, HWND parent, ViewHost& host) : ViewOf(frame, host, nullptr) {
    if (!frame.Caption().empty()) {
      widget_ =
          MakeWindow(frame, parent, WC_BUTTONW, ToWindowCaption(frame.Caption()), BS_GROUPBOX);
      return;
    }
    widget_ = MakeWindow(frame, parent, WC_STATICW, {},
                         frame.At().height <= kThickestLine ? SS_ETCHEDHORZ : SS_ETCHEDFRAME);
    // Overrides the height that an etched line gives itself.
    const RECT at = PlaceOf(frame.At());
    SetWindowPos(widget_, nullptr, 0, 0, at.right - at.left, at.bottom - at.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  }
  bool IsBackground() const override { return true; }
};

class PictureView final : public WindowView<const PictureBox> {
 public:
  PictureView(const PictureBox& picture, HWND parent, ViewHost& host)
      : ViewOf(picture, host,
               MakeWindow(picture, parent, WC_STATICW, {},
                          SS_ICON | SS_REALSIZECONTROL | SS_CENTERIMAGE)) {
    const int size = ToPixels(std::min(picture.At().width, picture.At().height));
    const HANDLE icon = LoadImageW(nullptr, reinterpret_cast<const wchar_t*>(IDI_INFORMATION),
                                   IMAGE_ICON, size, size, LR_SHARED);  // owned by the system
    SendMessageW(widget_, STM_SETICON, reinterpret_cast<WPARAM>(icon), 0);
  }
};

// --- buttons ---

// Counts a double click as two clicks, as push buttons do.
inline bool IsClick(WORD notification) {
  return notification == BN_CLICKED || notification == BN_DOUBLECLICKED;
}

template <class Control>
class ButtonView : public WindowView<Control> {
 public:
  void Show(Aspect aspect) override {
    if constexpr (requires { this->control_.Value(); })
      if (aspect == Aspect::checked)
        SendMessageW(this->widget_, BM_SETCHECK,
                     this->control_.Value() ? BST_CHECKED : BST_UNCHECKED, 0);
  }
  void Command(WORD notification) override {
    if (IsClick(notification) && !this->host_.IsEntering()) Press();
  }

 protected:
  ButtonView(Control& control, HWND parent, ViewHost& host, DWORD style)
      : WindowView<Control>(
            control, host,
            MakeWindow(control, parent, WC_BUTTONW, ToWindowCaption(control.Caption()),
                       style | BS_NOTIFY | WS_TABSTOP)) {
    ButtonView::Show(Aspect::checked);
    host.Watch(this->widget_);
  }
  void Press() {
    this->host_.Act([this] { FormRenderer::Click(this->control_); });
  }
};

class CheckBoxView final : public ButtonView<CheckBox> {
 public:
  CheckBoxView(CheckBox& box, HWND parent, ViewHost& host)
      : ButtonView(box, parent, host, BS_CHECKBOX) {}
};

// The arrow keys move to the other buttons of a group and choose them.
class OptionButtonView final : public ButtonView<OptionButton> {
 public:
  OptionButtonView(OptionButton& button, HWND parent, ViewHost& host)
      : ButtonView(button, parent, host, BS_RADIOBUTTON) {}
  KeyUse Key(WPARAM key, HWND) override {
    if (key == VK_UP || key == VK_LEFT) return Step(-1);
    if (key == VK_DOWN || key == VK_RIGHT) return Step(1);
    return KeyUse::none;
  }

 private:
  KeyUse Step(int step) {
    if (OptionButton* next = NextOption(control_, step)) {
      SetFocus(host_.WidgetOf(*next));
      host_.Act([next] { FormRenderer::Click(*next); });
    }
    return KeyUse::done;
  }
};

// Enter presses the focused button, not the dialog's default button.
class CommandButtonView final : public ButtonView<CommandButton> {
 public:
  CommandButtonView(CommandButton& button, HWND parent, ViewHost& host)
      : ButtonView(button, parent, host,
                   button.DialogRole() == CommandButton::Role::acceptsDialog ? BS_DEFPUSHBUTTON
                                                                             : BS_PUSHBUTTON) {}
  KeyUse Key(WPARAM key, HWND) override {
    if (key != VK_RETURN || !control_.IsReachable()) return KeyUse::none;
    Press();
    return KeyUse::done;
  }
};

// --- tabs ---

class TabControlView final : public WindowView<TabControl> {
 public:
  TabControlView(TabControl& tabs, HWND parent, ViewHost& host)
      : ViewOf(tabs, host,
               MakeWindow(tabs, parent, WC_TABCONTROLW, {}, WS_TABSTOP | WS_CLIPCHILDREN)) {
    // Windows adds a border to the height of the tabs.
    constexpr int kAroundTabs = 60;
    SendMessageW(widget_, TCM_SETITEMSIZE, 0, MAKELPARAM(0, ToPixels(kTabRowHeight - kAroundTabs)));
    host.Watch(widget_);
  }
  void Show(Aspect) override {
    const std::size_t chosen = control_.SelectedTab();
    SendMessageW(widget_, TCM_SETCURSEL, chosen, 0);
    for (std::size_t tab = 0; tab < control_.Controls().size(); ++tab)
      ShowWindow(host_.WidgetOf(*control_.Controls()[tab]), tab == chosen ? SW_SHOWNA : SW_HIDE);
  }
  LRESULT Notify(NMHDR& notification) override {
    if (notification.code != TCN_SELCHANGE) return 0;
    const auto tab = static_cast<std::size_t>(SendMessageW(widget_, TCM_GETCURSEL, 0, 0));
    host_.Act([&] { FormRenderer::SelectTab(control_, tab); });
    host_.Update([this] { Show(Aspect::selection); });
    return 0;
  }
};

// Forwards the messages of its controls to the form.
class TabPanelView final : public ControlView, private OwnWindow {
 public:
  TabPanelView(const TabPanel& panel, HWND tabs, ViewHost& host) : host_(host) {
    std::wstring caption = ToWindowCaption(panel.Caption());
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = caption.data();
    SendMessageW(tabs, TCM_INSERTITEMW,
                 static_cast<WPARAM>(SendMessageW(tabs, TCM_GETITEMCOUNT, 0, 0)),
                 reinterpret_cast<LPARAM>(&item));
    RECT place = PlaceOf(panel.At());
    const int edge = ToPixels(kEdge);
    place.left += edge;
    place.right -= edge;
    place.bottom -= edge;
    Begin(tabs, {.style = WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
                 .exStyle = WS_EX_CONTROLPARENT,
                 .place = place});
  }
  ~TabPanelView() override { End(); }
  HWND Widget() const override { return Handle(); }
  // The tab control does this.
  void ShowVisible(bool) override {}
  POINT Origin() const override { return {-ToPixels(kEdge), 0}; }

 private:
  // The width of the border around the open panel.
  static constexpr int kEdge = 30;

  LRESULT Message(UINT message, WPARAM wParam, LPARAM lParam) noexcept override {
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

  ViewHost& host_;
};

// --- timers ---

class TimerView final : public ControlView {
 public:
  TimerView(Timer& timer, HWND, ViewHost& host) : timer_(timer), host_(host) {}
  HWND Widget() const override { return nullptr; }
  void Show(Aspect) override {
    KillTimer(host_.Window(), Id());
    if (timer_.IsRunning() && timer_.Enabled())
      SetTimer(host_.Window(), Id(), static_cast<UINT>(std::max(0, timer_.Interval())), nullptr);
  }
  void ShowEnabled(bool) override { Show(Aspect::timer); }
  void ShowVisible(bool) override {}
  void Ticked() override {
    host_.Act([this] { FormRenderer::Tick(timer_); });
  }

 private:
  // The timer's id in the form's window.
  UINT_PTR Id() const { return reinterpret_cast<UINT_PTR>(this); }

  Timer& timer_;
  ViewHost& host_;
};

}  // namespace kvo
