#pragma once

#include <memory>
#include <vector>

#include "host/win32/ControlView.h"
#include "host/win32/OwnWindow.h"
#include "host/win32/ValueEditors.h"

namespace kvo {

// The property grid as a list of rows. What can be done to the value of the row on which the user
// stands can be done at once: its editor is open.
class PropertyGridView final : public ControlView, private OwnWindow {
 public:
  PropertyGridView(PropertyGrid& grid, HWND parent, ViewHost& host);
  ~PropertyGridView() override;

  HWND Widget() const override { return Handle(); }
  void Show(Aspect aspect) override;
  void ShowItem(PropertyGridItem& item) override;
  void Enter(bool backwards) override;
  bool MoveInside(bool backwards) override;
  KeyUse Key(WPARAM key, HWND window) override;

  void Later() override;

 private:
  LRESULT Message(UINT message, WPARAM wParam, LPARAM lParam) noexcept override;

  // --- rows; a row's number is its place in the grid ---
  int RowCount() const { return static_cast<int>(grid_.Items().size()); }
  int HeadHeight() const;
  int RowsThatShow() const;
  int Middle() const;  // where the values begin
  RECT PlaceOfRow(int row) const;

  void ShowRows();
  void ShowButtons();
  void ShowEditor();
  void ScrollTo(int top);
  void Scroll(WORD how);
  void BringIntoView(int row);

  // --- painting ---
  void Paint();
  void PaintRows(HDC device);
  void PaintRow(HDC device, int row);
  void PaintHead(HDC device);

  // --- the user ---
  void SelectRow(PropertyGridItem* item);
  void EnterEditor();
  void Click(int y);
  bool KeyDown(WPARAM key);
  bool MoveSelection(WPARAM key);
  void Clicked(HWND button);
  bool HasFocus() const;

  PropertyGrid& grid_;
  ViewHost& host_;
  int top_ = 0;                // the first row that shows
  std::vector<HWND> buttons_;  // of the rows that are buttons, in their order
  std::unique_ptr<ValueEditors> editors_;
};

}  // namespace kvo
