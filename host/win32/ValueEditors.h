// The editors of a property grid's values.
#pragma once

#include <windows.h>

#include <memory>
#include <utility>

#include "common/forms/PropertyRows.h"
#include "host/win32/EditSync.h"
#include "host/win32/EditViews.h"
#include "host/win32/Fonts.h"
#include "host/win32/SimpleViews.h"

namespace kvo {

// The room that a value's swatch takes; 0 without one.
inline int SwatchRoom(const PropertyGridItem& item, const RECT& place) {
  return SwatchOf(item) ? static_cast<int>(place.bottom - place.top) : 0;
}

// One window of each kind, lent to the selected row. They last as long as the grid, because an edit
// may remove its own row.
class ValueEditors {
 public:
  // `grid` is their parent. `keys` gets each key of an editor first and returns true if it has
  // handled it.
  ValueEditors(HWND grid, const Font& font, ViewHost& host, std::function<bool(WPARAM)> keys)
      : grid_(grid), font_(font), host_(host), keys_(std::move(keys)) {}

  // Opens the editor of a row's value at `place`. Closes it for nullptr or a row without an editor.
  void Open(PropertyGridItem* item, const RECT& place) {
    if (item != nullptr && !HasValueBox(*item)) item = nullptr;
    if (item == item_) {
      if (item != nullptr) Place(place);
      return;
    }
    HWND former = open_;
    item_ = item;
    open_ = nullptr;
    accepted_ = false;
    text_.SetItem(item);
    if (item != nullptr && item->Kind() == ItemKind::list) {
      HWND& list = item->Editable() ? freeList_ : list_;
      if (list == nullptr) list = MakeList(item->Editable());
      if (item->Editable() && listSync_ == nullptr)
        listSync_ = std::make_unique<EditSync>(EditOf(list), text_, Lines::one, host_);
      open_ = list;
      ListOfRows(open_).Clear();
    } else if (item != nullptr) {
      if (line_ == nullptr) {
        line_ = Make(WC_EDITW, nullptr, ES_AUTOHSCROLL);
        lineSync_ = std::make_unique<EditSync>(line_, text_, Lines::one, host_);
      }
      open_ = line_;
    }
    const bool button = item != nullptr && item->Kind() == ItemKind::color;
    if (button && button_ == nullptr) button_ = Make(WC_BUTTONW, L"...", BS_PUSHBUTTON | BS_NOTIFY);
    const HWND focused = GetFocus();
    const bool leaves =
        (former != nullptr && former != open_ && (focused == former || IsChild(former, focused))) ||
        (!button && button_ != nullptr && focused == button_);
    if (leaves) SetFocus(grid_);
    if (former != nullptr && former != open_) ShowWindow(former, SW_HIDE);
    if (button_ != nullptr && !button) ShowWindow(button_, SW_HIDE);
    if (item == nullptr) return;
    ShowValue();
    Place(place);
    ShowWindow(open_, SW_SHOWNA);
    if (button) ShowWindow(button_, SW_SHOWNA);
    if (leaves && IsWindowEnabled(open_)) SetFocus(open_);
  }
  void Place(const RECT& place) {
    if (open_ == nullptr) return;
    RECT at = place;
    at.left += SwatchRoom(*item_, place);
    if (item_->Kind() == ItemKind::color) {
      at.right -= ToPixels(kButtonWidth);
      MoveWindow(button_, at.right, at.top, place.right - at.right, at.bottom - at.top, TRUE);
    }
    if (open_ == line_) {
      constexpr int kPadding = 30;  // aligns the text with the grid's
      at.left += ToPixels(kPadding);
      at.top += ToPixels(kPadding);
      MoveWindow(line_, at.left, at.top, at.right - at.left, at.bottom - at.top, TRUE);
    } else {
      MoveWindow(open_, at.left, at.top, at.right - at.left, ToPixels(kDropHeight), TRUE);
      SetListHeight(open_, static_cast<int>(at.bottom - at.top));
    }
  }
  // Updates the editor from its row.
  void ShowValue() {
    if (open_ == nullptr) return;
    const bool enabled = item_->Enabled();
    EnableWindow(open_, enabled);
    if (button_ != nullptr) EnableWindow(button_, enabled);
    if (open_ == line_)
      lineSync_->ShowText();
    else
      ShowChoices();
  }
  // Selects the text that the next typed character replaces.
  void SelectValue() {
    const HWND edit = open_ == line_ ? line_ : open_ == freeList_ ? EditOf(freeList_) : nullptr;
    if (edit != nullptr) SendMessageW(edit, EM_SETSEL, 0, -1);
  }
  // Clicks the row's button, then selects the value for typing.
  void PressButton() {
    host_.Act([this] { FormRenderer::ClickButton(*item_); });
    if (Main() == nullptr) return;
    SetFocus(Main());
    SelectValue();
  }

  // The editor's main window; nullptr when none is open or it is disabled.
  HWND Main() const { return open_ != nullptr && IsWindowEnabled(open_) ? open_ : nullptr; }
  // The button beside it; nullptr when there is none or it is disabled.
  HWND Button() const {
    const bool shows = open_ != nullptr && item_->Kind() == ItemKind::color;
    return shows && IsWindowEnabled(button_) ? button_ : nullptr;
  }
  // Whether it is a list, which uses the arrow keys itself.
  bool IsList() const { return open_ != nullptr && (open_ == list_ || open_ == freeList_); }

  void Command(HWND window, WORD notification) {
    if (open_ == nullptr) return;
    if (window == button_) {
      if (IsClick(notification)) PressButton();
    } else if (window != open_) {
      return;
    } else if (window == line_) {
      if (notification == EN_CHANGE) lineSync_->Edited();
    } else if (notification == CBN_EDITCHANGE) {
      listSync_->Edited();
    } else if (notification == CBN_SELENDOK || notification == CBN_SELENDCANCEL ||
               (notification == CBN_SELCHANGE && !SendMessageW(open_, CB_GETDROPPEDSTATE, 0, 0))) {
      accepted_ = notification != CBN_SELENDCANCEL;
      host_.CallLater(grid_);
    }
  }
  ControlView::KeyUse Key(WPARAM key) const {
    return IsList() ? KeyOfList(open_, key) : ControlView::KeyUse::none;
  }
  // Draws a choice of the list, or in the closed list the value.
  void Draw(const DRAWITEMSTRUCT& what) const {
    if (item_ == nullptr) return;
    const bool chosen = (what.itemState & ODS_SELECTED) != 0;
    const bool disabled = (what.itemState & ODS_DISABLED) != 0;
    FillRect(what.hDC, &what.rcItem, GetSysColorBrush(chosen ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    SetBkMode(what.hDC, TRANSPARENT);
    SetTextColor(what.hDC, GetSysColor(disabled ? COLOR_GRAYTEXT
                                       : chosen ? COLOR_HIGHLIGHTTEXT
                                                : COLOR_WINDOWTEXT));
    const auto& choices = item_->Choices();
    const bool value = what.itemID >= choices.size();
    const std::wstring text =
        ToWindowText(value ? ToText(item_->Value()) : choices[what.itemID]->Caption());
    RECT at = what.rcItem;
    ++at.left;
    const Selected font(what.hDC, FontOf(font_));
    DrawTextW(what.hDC, text.c_str(), -1, &at,
              DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
  }
  // The user has chosen a row or cancelled.
  void Later() {
    if (!IsList()) return;
    const auto row = static_cast<std::size_t>(ListOfRows(open_).Chosen());
    const bool chosen = std::exchange(accepted_, false) && row < item_->Choices().size();
    if (chosen) host_.Act([&] { FormRenderer::ChooseValue(*item_, *item_->Choices()[row]); });
    host_.Update([this] { ShowValue(); });
    if (chosen) SelectValue();
  }

 private:
  static constexpr int kButtonWidth = 330;

  HWND Make(const wchar_t* className, const wchar_t* text, DWORD style) {
    const HWND window =
        CreateWindowExW(0, className, text, style | WS_CHILD | WS_CLIPSIBLINGS | WS_TABSTOP, 0, 0,
                        0, ToPixels(kDropHeight), grid_, nullptr, ThisModule(), nullptr);
    SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(FontOf(font_)), FALSE);
    host_.Watch(window);
    Hook(window);
    return window;
  }
  HWND MakeList(bool free) {
    // Owner-drawn, to show a value that is not a choice in the closed list.
    const DWORD kind = free ? CBS_DROPDOWN | CBS_AUTOHSCROLL
                            : CBS_DROPDOWNLIST | CBS_OWNERDRAWFIXED | CBS_HASSTRINGS;
    const HWND list = Make(WC_COMBOBOXW, nullptr, kind | WS_VSCROLL);
    if (const HWND edit = EditOf(list)) {
      host_.Watch(edit);
      Hook(edit);
    }
    return list;
  }
  // Offers each key to keys_ first.
  void Hook(HWND window) {
    const std::size_t at = hooks_.size();
    hooks_.push_back(nullptr);
    hooks_[at] = std::make_unique<WindowHook>(
        window, [this, at](UINT message, WPARAM wParam, LPARAM lParam) -> LRESULT {
          if (message == WM_KEYDOWN && keys_(wParam)) return 0;
          return hooks_[at]->Next(message, wParam, lParam);
        });
  }
  void ShowChoices() {
    ShowRows(ListOfRows(open_), item_->Choices(), &PropertyGridItem::Caption, ChosenRow(*item_));
    if (open_ == freeList_)
      listSync_->ShowText();
    else
      InvalidateRect(open_, nullptr, TRUE);
  }

  HWND grid_;
  const Font& font_;
  ViewHost& host_;
  std::function<bool(WPARAM)> keys_;
  ValueText text_;
  HWND line_ = nullptr;
  HWND list_ = nullptr;      // not editable
  HWND freeList_ = nullptr;  // editable
  HWND button_ = nullptr;
  HWND open_ = nullptr;  // line_, list_ or freeList_
  PropertyGridItem* item_ = nullptr;
  std::unique_ptr<EditSync> lineSync_;
  std::unique_ptr<EditSync> listSync_;
  std::vector<std::unique_ptr<WindowHook>> hooks_;
  bool accepted_ = false;
};

}  // namespace kvo
