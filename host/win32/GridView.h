#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string>
#include <vector>

#include "host/desktop/ShownRecords.h"
#include "host/win32/ControlView.h"

namespace kvo {

class GridView final : public WindowView<Grid> {
 public:
  GridView(Grid& grid, HWND parent, ViewHost& host);
  void Show(Aspect aspect) override;
  LRESULT Notify(NMHDR& notification) override;

 private:
  void ShowRows();
  void ShowColumns();
  void ShowSortHints();
  void ShowSelection();
  void Fetch(LVITEMW& item);
  std::vector<std::size_t> SelectedRows() const;

  HWND hints_;
  std::size_t hintCount_ = 0;
  ShownRecords records_;
};

}  // namespace kvo
