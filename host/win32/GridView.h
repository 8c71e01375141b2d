#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string>
#include <vector>

#include "host/win32/ControlView.h"

namespace kvo {

// The records of a data grid. Holds none of them: each is asked for when it is painted.
class GridView final : public ControlView {
 public:
  GridView(Grid& grid, HWND parent, ViewHost& host);
  HWND Window() const override { return window_; }
  void Show(Aspect aspect) override;
  LRESULT Notify(NMHDR& notification) override;

 private:
  void ShowRows();
  void ShowColumns();
  void ShowSortHints();
  void ShowSelection();
  void Fetch(LVITEMW& item);
  // What the database refuses is reported once, and shows as nothing until the rows are new.
  void Refused();
  std::vector<std::size_t> SelectedRows() const;

  Grid& grid_;
  ViewHost& host_;
  HWND window_;
  HWND hints_;
  std::size_t hintCount_ = 0;
  bool refused_ = false;
  std::wstring cell_;
};

}  // namespace kvo
