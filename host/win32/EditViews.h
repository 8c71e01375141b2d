// The views of edit boxes.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <memory>

#include "host/desktop/Measures.h"
#include "host/win32/ControlView.h"
#include "host/win32/EditSync.h"
#include "host/win32/Twips.h"
#include "host/win32/WindowText.h"

namespace kvo {

// --- drop-down lists ---

// Adapts a list for ShowRows.
class ListOfRows {
 public:
  explicit ListOfRows(HWND list) : list_(list) {}
  std::size_t Count() const {
    return static_cast<std::size_t>(SendMessageW(list_, CB_GETCOUNT, 0, 0));
  }
  void Clear() { SendMessageW(list_, CB_RESETCONTENT, 0, 0); }
  void Add(std::string_view text) {
    SendMessageW(list_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(ToWindowText(text).c_str()));
  }
  int Chosen() const { return static_cast<int>(SendMessageW(list_, CB_GETCURSEL, 0, 0)); }
  void Choose(int row) { SendMessageW(list_, CB_SETCURSEL, static_cast<WPARAM>(row), 0); }

 private:
  HWND list_;
};

// The height of an open list, in twips.
inline constexpr int kDropHeight = 3000;

// Gives a list the height from the form's design instead of Windows' default.
inline void SetListHeight(HWND list, int height) {
  // Finds the line height by trial, because the height that a list adds to it varies.
  constexpr int kUsual = 6;
  int line = height - kUsual;
  for (int turn = 0; turn < 3; ++turn) {
    SendMessageW(list, CB_SETITEMHEIGHT, WPARAM(-1), line);
    RECT now{};
    GetWindowRect(list, &now);
    const auto missing = height - static_cast<int>(now.bottom - now.top);
    if (missing == 0) break;
    line += missing;
  }
}

// The edit box of an editable list; nullptr for others.
inline HWND EditOf(HWND list) { return FindWindowExW(list, nullptr, WC_EDITW, nullptr); }

// How a list uses a key: while it is open, Enter and Escape close it.
inline ControlView::KeyUse KeyOfList(HWND list, WPARAM key) {
  const bool closes = key == VK_RETURN || key == VK_ESCAPE;
  return closes && SendMessageW(list, CB_GETDROPPEDSTATE, 0, 0) ? ControlView::KeyUse::window
                                                                : ControlView::KeyUse::none;
}

// --- the views ---

class TextBoxView final : public WindowView<TextBox> {
 public:
  TextBoxView(TextBox& box, HWND parent, ViewHost& host)
      : ViewOf(box, host, MakeWindow(box, parent, WC_EDITW, {}, StyleOf(box), WS_EX_CLIENTEDGE)),
        text_(box),
        sync_(widget_, text_, box.MultiLine() ? Lines::many : Lines::one, host) {
    sync_.ShowText();
    host.Watch(widget_);
  }
  void Show(Aspect aspect) override {
    if (aspect == Aspect::text) sync_.ShowText();
    if (aspect == Aspect::selection) sync_.ShowSelection();
    if (aspect == Aspect::color) InvalidateRect(widget_, nullptr, TRUE);
  }
  void Command(WORD notification) override {
    if (notification == EN_CHANGE) sync_.Edited();
  }
  HBRUSH Color(HDC device) override {
    if (control_.BackColor() == SystemColor::windowBackground) return nullptr;
    SetBkColor(device, GetSysColor(COLOR_BTNFACE));
    return GetSysColorBrush(COLOR_BTNFACE);
  }
  KeyUse Key(WPARAM key, HWND) override {
    return control_.MultiLine() && key == VK_RETURN ? KeyUse::window : KeyUse::none;
  }

 private:
  static DWORD StyleOf(const TextBox& box) {
    if (!box.MultiLine()) return ES_AUTOHSCROLL | WS_TABSTOP;
    const DWORD bar = box.At().height < kTwoLines ? 0 : WS_VSCROLL;
    return ES_MULTILINE | ES_AUTOVSCROLL | ES_WANTRETURN | WS_TABSTOP | bar;
  }

  BoxText text_;
  EditSync sync_;
};

class ComboBoxView final : public WindowView<ComboBox> {
 public:
  ComboBoxView(ComboBox& box, HWND parent, ViewHost& host)
      : ViewOf(box, host, MakeWindow(box, parent, WC_COMBOBOXW, {}, StyleOf(box))), text_(box) {
    const RECT place = PlaceOf(box.At());
    SetWindowPos(widget_, nullptr, 0, 0, place.right - place.left, ToPixels(kDropHeight),
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    SetListHeight(widget_, static_cast<int>(place.bottom - place.top));
    host.Watch(widget_);
    if (box.Editable()) {
      sync_ = std::make_unique<EditSync>(EditOf(widget_), text_, Lines::one, host);
      host.Watch(EditOf(widget_));
    }
    ShowChoices();
  }
  void Show(Aspect aspect) override {
    if (aspect == Aspect::choices || aspect == Aspect::text) ShowChoices();
    if (aspect == Aspect::selection && sync_) sync_->ShowSelection();
  }
  void Command(WORD notification) override {
    switch (notification) {
      case CBN_EDITCHANGE:
        sync_->Edited();
        break;
      case CBN_SELENDOK:
        accepted_ = IsOpen() ? Accepted::click : Accepted::key;
        host_.CallLater(widget_);
        break;
      case CBN_SELENDCANCEL:
        accepted_ = Accepted::nothing;
        host_.CallLater(widget_);
        break;
      case CBN_SELCHANGE:  // a key in the closed list, or moving through the open one
        if (!IsOpen()) {
          if (accepted_ == Accepted::nothing) accepted_ = Accepted::key;
          host_.CallLater(widget_);
        }
        break;
      default:
        break;
    }
  }
  void Enter(bool) override {
    SetFocus(widget_);
    if (sync_) SendMessageW(EditOf(widget_), EM_SETSEL, 0, -1);
  }
  KeyUse Key(WPARAM key, HWND) override { return KeyOfList(widget_, key); }
  // The user has chosen a row or cancelled.
  void Later() override {
    const int row = ListOfRows(widget_).Chosen();
    const Accepted how = std::exchange(accepted_, Accepted::nothing);
    const bool chosen =
        how == Accepted::click || (how == Accepted::key && row != control_.ListIndex());
    if (chosen && row >= 0 && row < static_cast<int>(control_.Rows().size()))
      host_.Act([&] { FormRenderer::Choose(control_, row); });
    host_.Update([this] { ShowChoices(); });
  }

 private:
  static DWORD StyleOf(const ComboBox& box) {
    return (box.Editable() ? CBS_DROPDOWN | CBS_AUTOHSCROLL : CBS_DROPDOWNLIST) | WS_VSCROLL |
           WS_TABSTOP;
  }
  void ShowChoices() {
    ShowRows(ListOfRows(widget_), control_.Rows(), &ComboBox::Row::text, control_.ListIndex());
    if (sync_) sync_->ShowText();
  }
  bool IsOpen() const { return SendMessageW(widget_, CB_GETDROPPEDSTATE, 0, 0) != 0; }

  // A key in the closed list chooses a row only if it was not chosen before.
  enum class Accepted { nothing, key, click };

  BoxText text_;
  std::unique_ptr<EditSync> sync_;  // for editable boxes
  Accepted accepted_ = Accepted::nothing;
};

}  // namespace kvo
