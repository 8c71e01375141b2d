#pragma once

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <string>
#include <vector>

#include "host/desktop/ShownRecords.h"
#include "host/win32/ControlView.h"
#include "host/win32/OwnWindow.h"
#include "host/win32/WindowText.h"

namespace kvo {

class GridView final : public WindowView<Grid> {
 public:
  GridView(Grid& grid, HWND parent, ViewHost& host)
      : ViewOf(grid, host,
               MakeWindow(
                   grid, parent, WC_LISTVIEWW, {},
                   LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS | LVS_NOSORTHEADER | WS_TABSTOP,
                   WS_EX_CLIENTEDGE)),
        hints_(CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                               WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0, 0, widget_,
                               nullptr, ThisModule(), nullptr)),
        records_(grid, host, kMostRows) {
    SendMessageW(widget_, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
    host.Watch(widget_);
    ShowRows();
  }
  void Show(Aspect aspect) override {
    if (aspect == Aspect::rows) ShowRows();
    if (aspect == Aspect::selection) ShowSelection();
  }
  LRESULT Notify(NMHDR& notification) override {
    switch (notification.code) {
      case LVN_GETDISPINFOW:
        Fetch(reinterpret_cast<NMLVDISPINFOW&>(notification).item);
        break;
      case LVN_ITEMCHANGED:
      case LVN_ODSTATECHANGED:
        host_.Act([this] { FormRenderer::SelectRows(control_, SelectedRows()); });
        break;
      case NM_DBLCLK:
        if (reinterpret_cast<NMITEMACTIVATE&>(notification).iItem >= 0)
          host_.Act([this] { FormRenderer::DoubleClick(control_); });
        break;
      case LVN_COLUMNCLICK:
      case HDN_ENDTRACKW:
        ShowSortHints();
        break;
      default:
        break;
    }
    return 0;
  }

 private:
  static constexpr std::size_t kMostRows = 100'000'000;  // the limit of a list view

  // Sends a message of the common controls.
  static LRESULT Send(HWND window, UINT message, WPARAM wParam = 0, const void* lParam = nullptr) {
    return SendMessageW(window, message, wParam, reinterpret_cast<LPARAM>(lParam));
  }
  static HWND HeadOf(HWND list) { return reinterpret_cast<HWND>(Send(list, LVM_GETHEADER)); }

  void ShowRows() {
    ShowColumns();
    records_.Renew();
    LVITEMW none{};
    none.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    Send(widget_, LVM_SETITEMSTATE, WPARAM(-1), &none);
    SendMessageW(widget_, LVM_SETITEMCOUNT, records_.Count(), 0);
    InvalidateRect(widget_, nullptr, TRUE);
    ShowSelection();
  }
  void ShowColumns() {
    const auto& columns = control_.Columns();
    const auto shown = static_cast<std::size_t>(Send(HeadOf(widget_), HDM_GETITEMCOUNT));
    for (std::size_t column = shown; column > columns.size(); --column)
      Send(widget_, LVM_DELETECOLUMN, column - 1);
    const RECT place = PlaceOf(control_.At());
    const int room =
        place.right - place.left - 2 * GetSystemMetrics(SM_CXEDGE) - GetSystemMetrics(SM_CXVSCROLL);
    const std::vector<int> widths = records_.Widths(room);
    for (std::size_t at = 0; at < columns.size(); ++at) {
      std::wstring caption = ToWindowText(columns[at].caption);
      LVCOLUMNW column{};
      column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
      column.fmt = LVCFMT_LEFT;
      column.pszText = caption.data();
      column.cx = widths[at];
      Send(widget_, at < shown ? LVM_SETCOLUMNW : LVM_INSERTCOLUMNW, at, &column);
    }
    ShowSortHints();
  }
  void ShowSortHints() {
    const HWND head = HeadOf(widget_);
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V1_SIZE;
    tool.uFlags = TTF_SUBCLASS;
    tool.hwnd = head;
    for (tool.uId = 0; tool.uId < hintCount_; ++tool.uId) Send(hints_, TTM_DELTOOLW, 0, &tool);
    hintCount_ = control_.Columns().size();
    for (std::size_t column = 0; column < hintCount_; ++column) {
      std::wstring hint = ToWindowText(control_.Columns()[column].sortHint);
      tool.uId = column;
      tool.lpszText = hint.data();
      Send(head, HDM_GETITEMRECT, column, &tool.rect);
      Send(hints_, TTM_ADDTOOLW, 0, &tool);
    }
  }
  void ShowSelection() {
    if (SelectedRows() == control_.SelectedRows()) return;
    LVITEMW state{};
    state.stateMask = LVIS_SELECTED;
    Send(widget_, LVM_SETITEMSTATE, WPARAM(-1), &state);
    state.state = LVIS_SELECTED;
    for (const std::size_t row : control_.SelectedRows())
      Send(widget_, LVM_SETITEMSTATE, row, &state);
  }
  void Fetch(LVITEMW& item) {
    if (!(item.mask & LVIF_TEXT) || item.pszText == nullptr || item.cchTextMax <= 0) return;
    const std::wstring cell = ToWindowText(records_.Cell(static_cast<std::size_t>(item.iItem),
                                                         static_cast<std::size_t>(item.iSubItem)));
    const std::size_t shown = std::min(cell.size(), static_cast<std::size_t>(item.cchTextMax) - 1);
    std::copy_n(cell.begin(), shown, item.pszText);
    item.pszText[shown] = 0;
  }
  std::vector<std::size_t> SelectedRows() const {
    std::vector<std::size_t> rows;
    LRESULT row = -1;
    while ((row = SendMessageW(widget_, LVM_GETNEXTITEM, static_cast<WPARAM>(row),
                               LVNI_SELECTED)) >= 0)
      rows.push_back(static_cast<std::size_t>(row));
    return rows;
  }

  HWND hints_;
  std::size_t hintCount_ = 0;
  ShownRecords records_;
};

}  // namespace kvo
