#pragma once

#include <algorithm>
#include <memory>
#include <vector>

#include "host/desktop/Measures.h"
#include "host/win32/OwnWindow.h"
#include "host/win32/ValueEditors.h"

namespace kvo {

// The property grid as a list of rows. The editor of the selected row's value is always open.
class PropertyGridView final : public ControlView, private OwnWindow {
 public:
  PropertyGridView(PropertyGrid& grid, HWND parent, ViewHost& host) : grid_(grid), host_(host) {
    Begin(parent, {.style = WS_CHILD | WS_CLIPSIBLINGS | WS_CLIPCHILDREN | WS_VSCROLL | WS_TABSTOP,
                   .exStyle = WS_EX_CLIENTEDGE,
                   .place = PlaceOf(grid.At())});
    editors_ = std::make_unique<ValueEditors>(Handle(), grid.TextFont(), host,
                                              [this](WPARAM key) { return MoveSelection(key); });
    host.Watch(Handle());
    ShowRows();
  }
  ~PropertyGridView() override { End(); }

  HWND Widget() const override { return Handle(); }
  void Show(Aspect aspect) override {
    if (aspect == Aspect::items) ShowRows();
    if (aspect != Aspect::selection) return;
    ShowEditor();
    BringIntoView(RowOf(grid_, grid_.SelectedItem()));
    InvalidateRect(Handle(), nullptr, FALSE);
  }
  void ShowItem(PropertyGridItem& item) override {
    if (&item == grid_.SelectedItem()) editors_->ShowValue();
    if (item.Kind() == ItemKind::button) ShowButtons();
    ShowEditor();  // makes room for a swatch
    InvalidateRect(Handle(), nullptr, FALSE);
  }
  void Enter(bool backwards) override {
    if (backwards && editors_->Button() != nullptr) {
      SetFocus(editors_->Button());
    } else {
      if (editors_->Main() == nullptr) SetFocus(Handle());
      EnterEditor();
    }
  }
  // Moves from the value to the button beside it, and back.
  bool MoveInside(bool backwards) override {
    const HWND button = editors_->Button();
    if (button == nullptr) return false;
    const bool onButton = GetFocus() == button;
    if (onButton != backwards) return false;
    if (backwards)
      EnterEditor();
    else
      SetFocus(button);
    return true;
  }
  KeyUse Key(WPARAM key, HWND window) override {
    if (const KeyUse use = editors_->Key(key); use != KeyUse::none) return use;
    if (key != VK_RETURN) return KeyUse::none;
    PropertyGridItem* item = grid_.SelectedItem();
    if (item != nullptr && item->Kind() == ItemKind::button) {
      host_.Act([item] { FormRenderer::ClickButton(*item); });
      return KeyUse::done;
    }
    if (window == editors_->Button() && window != nullptr) {
      editors_->PressButton();
      return KeyUse::done;
    }
    if (editors_->Main() == nullptr) return KeyUse::none;
    editors_->SelectValue();  // does not press the dialog's button
    return KeyUse::done;
  }

  void Later() override { editors_->Later(); }

 private:
  LRESULT Message(UINT message, WPARAM wParam, LPARAM lParam) noexcept override {
    switch (message) {
      case WM_PAINT:
        Paint();
        return 0;
      case WM_ERASEBKGND:
        return 1;
      case WM_SIZE:
        if (editors_ != nullptr) ShowRows();
        return 0;
      case WM_VSCROLL:
        Scroll(LOWORD(wParam));
        return 0;
      case WM_MOUSEWHEEL: {
        constexpr int kLines = 3;
        ScrollTo(top_ - GET_WHEEL_DELTA_WPARAM(wParam) * kLines / WHEEL_DELTA);
        return 0;
      }
      case WM_LBUTTONDOWN:
      case WM_LBUTTONDBLCLK:
        Click(static_cast<short>(HIWORD(lParam)));
        return 0;
      case WM_SETFOCUS:
      case WM_KILLFOCUS:
        InvalidateRect(Handle(), nullptr, FALSE);
        return 0;
      case WM_GETDLGCODE:
        return DLGC_WANTARROWS;
      case WM_KEYDOWN:
        if (KeyDown(wParam)) return 0;
        break;
      case WM_COMMAND: {
        const auto window = reinterpret_cast<HWND>(lParam);
        InvalidateRect(Handle(), nullptr, FALSE);
        if (host_.IsUpdating()) return 0;
        if (std::ranges::find(buttons_, window) == buttons_.end())
          editors_->Command(window, HIWORD(wParam));
        else if (HIWORD(wParam) == BN_CLICKED)
          Clicked(window);
        return 0;
      }
      case WM_DRAWITEM:
        editors_->Draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        return TRUE;
      default:
        break;
    }
    return Default(message, wParam, lParam);
  }

  // --- rows, by their index in the grid ---
  static int RowHeight() { return ToPixels(kGridRowHeight); }
  int RowCount() const { return static_cast<int>(grid_.Items().size()); }
  int HeadHeight() const { return grid_.Caption().empty() ? 0 : RowHeight(); }
  int RowsThatShow() const {
    RECT area{};
    GetClientRect(Handle(), &area);
    return std::max(1, (static_cast<int>(area.bottom) - HeadHeight()) / RowHeight());
  }
  int Middle() const {  // the left edge of the values
    RECT area{};
    GetClientRect(Handle(), &area);
    return static_cast<int>(area.right) / 2;
  }
  RECT PlaceOfRow(int row) const {
    RECT at{};
    GetClientRect(Handle(), &at);
    at.top = HeadHeight() + (row - top_) * RowHeight();
    at.bottom = at.top + RowHeight();
    return at;
  }

  void ShowRows() {
    SCROLLINFO bar{};
    bar.cbSize = sizeof(bar);
    bar.fMask = SIF_RANGE | SIF_PAGE;
    bar.nMax = std::max(0, RowCount() - 1);
    bar.nPage = static_cast<UINT>(RowsThatShow());
    SetScrollInfo(Handle(), SB_VERT, &bar, TRUE);
    ScrollTo(top_);
  }
  // Reuses the buttons of removed rows instead of destroying them, because a click may remove the
  // button's own row.
  void ShowButtons() {
    std::size_t used = 0;
    for (int row = 0; row < RowCount(); ++row) {
      const PropertyGridItem& item = *RowAt(grid_, row);
      if (item.Kind() != ItemKind::button) continue;
      if (used == buttons_.size()) {
        buttons_.push_back(CreateWindowExW(0, WC_BUTTONW, nullptr,
                                           WS_CHILD | WS_CLIPSIBLINGS | BS_PUSHBUTTON, 0, 0, 0, 0,
                                           Handle(), nullptr, ThisModule(), nullptr));
        SendMessageW(buttons_.back(), WM_SETFONT,
                     reinterpret_cast<WPARAM>(FontOf(grid_.TextFont())), FALSE);
        host_.Watch(buttons_.back());
      }
      const HWND button = buttons_[used++];
      const std::wstring caption = ToWindowCaption(item.Caption());
      if (TextOf(button) != caption) SetWindowTextW(button, caption.c_str());
      EnableWindow(button, item.Enabled());
      const RECT at = PlaceOfRow(row);
      MoveWindow(button, 0, at.top, at.right, at.bottom - at.top, TRUE);
      ShowWindow(button, at.top < HeadHeight() ? SW_HIDE : SW_SHOWNA);
    }
    for (; used < buttons_.size(); ++used) ShowWindow(buttons_[used], SW_HIDE);
  }
  void ShowEditor() {
    const int row = RowOf(grid_, grid_.SelectedItem());
    RECT at = PlaceOfRow(row);
    if (at.top < HeadHeight()) OffsetRect(&at, 0, -0x4000);  // scrolled away
    at.left = Middle();
    --at.bottom;  // the line under the row
    editors_->Open(grid_.SelectedItem(), at);
  }
  void ScrollTo(int top) {
    top_ = std::clamp(top, 0, std::max(0, RowCount() - RowsThatShow()));
    SCROLLINFO bar{};
    bar.cbSize = sizeof(bar);
    bar.fMask = SIF_POS;
    bar.nPos = top_;
    SetScrollInfo(Handle(), SB_VERT, &bar, TRUE);
    ShowButtons();
    ShowEditor();
    InvalidateRect(Handle(), nullptr, FALSE);
  }
  void Scroll(WORD how) {
    SCROLLINFO bar{};
    bar.cbSize = sizeof(bar);
    bar.fMask = SIF_TRACKPOS;
    GetScrollInfo(Handle(), SB_VERT, &bar);
    switch (how) {
      case SB_LINEUP:
        return ScrollTo(top_ - 1);
      case SB_LINEDOWN:
        return ScrollTo(top_ + 1);
      case SB_PAGEUP:
        return ScrollTo(top_ - RowsThatShow());
      case SB_PAGEDOWN:
        return ScrollTo(top_ + RowsThatShow());
      case SB_THUMBTRACK:
        return ScrollTo(bar.nTrackPos);
      default:
        return;
    }
  }
  void BringIntoView(int row) {
    if (row < 0) return;
    if (row < top_)
      ScrollTo(row);
    else if (row >= top_ + RowsThatShow())
      ScrollTo(row - RowsThatShow() + 1);
  }

  // --- painting ---
  static void DrawLine(HDC device, std::string_view text, RECT at, COLORREF color) {
    constexpr int kTextLeft = 45;
    at.left += ToPixels(kTextLeft);
    SetTextColor(device, color);
    DrawTextW(device, ToWindowText(text).c_str(), -1, &at,
              DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
  }
  static void DrawSwatch(HDC device, const RECT& value, const Swatch& color) {
    const int size = ToPixels(kSwatchSize);
    const auto margin = static_cast<int>((value.bottom - value.top - size) / 2);
    RECT at{value.left + margin, value.top + margin, value.left + margin + size,
            value.top + margin + size};
    FillRect(device, &at, GetSysColorBrush(COLOR_WINDOWTEXT));
    InflateRect(&at, -1, -1);
    const HBRUSH brush = CreateSolidBrush(RGB(color.red, color.green, color.blue));
    FillRect(device, &at, brush);
    DeleteObject(brush);
  }
  // Draws into a bitmap first, to avoid flicker.
  void Paint() {
    PAINTSTRUCT paint{};
    const HDC window = BeginPaint(Handle(), &paint);
    RECT area{};
    GetClientRect(Handle(), &area);
    const HDC memory = CreateCompatibleDC(window);
    const HBITMAP bitmap = CreateCompatibleBitmap(window, area.right, area.bottom);
    {
      const Selected drawn(memory, bitmap);
      FillRect(memory, &area, GetSysColorBrush(COLOR_WINDOW));
      SetBkMode(memory, TRANSPARENT);
      PaintRows(memory);
      PaintHead(memory);
      BitBlt(window, 0, 0, area.right, area.bottom, memory, 0, 0, SRCCOPY);
    }
    DeleteObject(bitmap);
    DeleteDC(memory);
    EndPaint(Handle(), &paint);
  }
  void PaintRows(HDC device) {
    const int end = std::min(RowCount(), top_ + RowsThatShow() + 1);
    for (int row = top_; row < end; ++row) PaintRow(device, row);
  }
  void PaintRow(HDC device, int row) {
    const PropertyGridItem& item = *RowAt(grid_, row);
    const RECT at = PlaceOfRow(row);
    const bool category = item.Kind() == ItemKind::category;
    const bool list = IsPlainList(grid_);
    const bool chosen = &item == grid_.SelectedItem();
    const bool spans = list || SpansColumns(item);
    RECT caption = at;
    if (!spans) caption.right = Middle();
    int background = category ? COLOR_BTNFACE : COLOR_WINDOW;
    int color = item.Enabled() ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT;
    if (chosen) {
      background = HasFocus() ? COLOR_HIGHLIGHT : COLOR_BTNFACE;
      if (HasFocus() && item.Enabled()) color = COLOR_HIGHLIGHTTEXT;
    }
    FillRect(device, &caption, GetSysColorBrush(background));
    const Selected font(device, FontOf(category ? kBoldFont : grid_.TextFont()));
    DrawLine(device, item.Caption(), caption, GetSysColor(color));
    if (spans) return;
    RECT value = at;
    value.left = Middle();
    if (const auto swatch = SwatchOf(item)) {
      DrawSwatch(device, value, *swatch);
      value.left += SwatchRoom(item, value);
    }
    DrawLine(device, ToText(item.Value()), value,
             GetSysColor(item.Enabled() ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT));
    const RECT below{at.left, at.bottom - 1, at.right, at.bottom};
    const RECT between{caption.right - 1, at.top, caption.right, at.bottom};
    FillRect(device, &below, GetSysColorBrush(COLOR_BTNFACE));
    FillRect(device, &between, GetSysColorBrush(COLOR_BTNFACE));
  }
  void PaintHead(HDC device) {
    if (HeadHeight() == 0) return;
    RECT head{};
    GetClientRect(Handle(), &head);
    head.bottom = HeadHeight();
    FillRect(device, &head, GetSysColorBrush(COLOR_BTNFACE));
    const Selected font(device, FontOf(grid_.TextFont()));
    DrawLine(device, grid_.Caption(), head, GetSysColor(COLOR_BTNTEXT));
    DrawEdge(device, &head, BDR_RAISEDINNER, BF_RECT);
  }

  // --- the user ---
  void SelectRow(PropertyGridItem* item) {
    host_.Act([&] { FormRenderer::SelectItem(grid_, item); });
  }
  void EnterEditor() {
    if (editors_->Main() == nullptr) return;
    SetFocus(editors_->Main());
    editors_->SelectValue();
  }
  void Click(int y) {
    SetFocus(Handle());
    const int row = y < HeadHeight() ? -1 : top_ + (y - HeadHeight()) / RowHeight();
    PropertyGridItem* item = RowAt(grid_, row);
    if (item == nullptr) return EnterEditor();
    SelectRow(item);
    EnterEditor();
  }
  bool KeyDown(WPARAM key) {
    PropertyGridItem* item = grid_.SelectedItem();
    if (key == VK_DELETE)
      host_.Act([this] { FormRenderer::PressDelete(grid_); });
    else if (key == VK_SPACE && item != nullptr && item->Kind() == ItemKind::button)
      host_.Act([item] { FormRenderer::ClickButton(*item); });
    else
      return MoveSelection(key);
    return true;
  }
  // In a list, the arrow keys move through its choices; with Ctrl, always through the rows.
  bool MoveSelection(WPARAM key) {
    const bool control = GetKeyState(VK_CONTROL) < 0;
    const bool editing = editors_->Main() != nullptr;
    if (editing && (editors_->IsList() && !control)) return false;
    if (editing && (key == VK_HOME || key == VK_END)) return false;
    int steps = 0;
    switch (key) {
      case VK_UP:
        steps = -1;
        break;
      case VK_DOWN:
        steps = 1;
        break;
      case VK_PRIOR:
        steps = -RowsThatShow();
        break;
      case VK_NEXT:
        steps = RowsThatShow();
        break;
      case VK_HOME:
        steps = -RowCount();
        break;
      case VK_END:
        steps = RowCount();
        break;
      default:
        return false;
    }
    PropertyGridItem* next = NextRow(grid_, steps);
    if (next == nullptr) return true;
    SelectRow(next);
    if (GetFocus() == Handle() || editors_->Main() == nullptr) SetFocus(Handle());
    EnterEditor();
    return true;
  }
  void Clicked(HWND button) {
    std::ptrdiff_t number = std::ranges::find(buttons_, button) - buttons_.begin();
    for (const auto& item : grid_.Items()) {
      if (item->Kind() != ItemKind::button || number-- > 0) continue;
      PropertyGridItem& clicked = *item;
      SetFocus(Handle());  // the row has the focus
      SelectRow(&clicked);
      if (RowOf(grid_, &clicked) != kNoRow)
        host_.Act([&clicked] { FormRenderer::ClickButton(clicked); });
      return;
    }
  }
  bool HasFocus() const {
    const HWND focused = GetFocus();
    return focused == Handle() || IsChild(Handle(), focused);
  }

  PropertyGrid& grid_;
  ViewHost& host_;
  int top_ = 0;                // the first visible row
  std::vector<HWND> buttons_;  // of the button rows, in their order
  std::unique_ptr<ValueEditors> editors_;
};

}  // namespace kvo
