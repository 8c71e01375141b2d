// The editors of a property grid's values.
#pragma once

#include <windows.h>

#include <memory>

#include "common/forms/PropertyRows.h"
#include "host/win32/ControlView.h"
#include "host/win32/EditSync.h"

namespace kvo {

// One window of each kind that is needed, lent to the row on which the user stands. None ends
// before the grid: what it tells may be the end of its row.
class ValueEditors {
 public:
  // In a grid's window. `keys` is offered each key that goes to an editor; true: it is done with.
  ValueEditors(HWND grid, const Font& font, ViewHost& host, std::function<bool(WPARAM)> keys);

  // Opens the editor of a row's value at a place; nullptr, or a row that has none, closes it.
  void Open(PropertyGridItem* item, const RECT& place);
  void Place(const RECT& place);
  // Brings the editor in step with its row.
  void ShowValue();
  // Selects what the next character replaces.
  void SelectValue();
  void PressButton();

  // What the keyboard goes to; nullptr when no editor is open, or it is disabled.
  HWND Main() const;
  // The button beside it; nullptr when there is none.
  HWND Button() const;
  // Whether it is a list, to which the arrow keys belong.
  bool IsList() const { return open_ != nullptr && (open_ == list_ || open_ == freeList_); }

  void Command(HWND window, WORD notification);
  ControlView::KeyUse Key(WPARAM key) const;
  // What a list shows that has no row chosen, or in the row that is drawn.
  void Draw(const DRAWITEMSTRUCT& what) const;
  void Later();

 private:
  struct Sizes;
  HWND Make(const wchar_t* className, const wchar_t* text, DWORD style);
  HWND MakeList(bool free);
  void Hook(HWND window);
  void ShowChoices();

  HWND grid_;
  const Font& font_;
  ViewHost& host_;
  std::function<bool(WPARAM)> keys_;
  ValueText text_;
  HWND line_ = nullptr;
  HWND list_ = nullptr;      // only its rows can be chosen
  HWND freeList_ = nullptr;  // can be typed into
  HWND button_ = nullptr;
  HWND open_ = nullptr;  // one of the first three
  PropertyGridItem* item_ = nullptr;
  std::unique_ptr<EditSync> lineSync_;
  std::unique_ptr<EditSync> listSync_;
  std::vector<std::unique_ptr<WindowHook>> hooks_;
  bool accepted_ = false;
};

// How much of a value's place its swatch takes.
int SwatchRoom(const PropertyGridItem& item, const RECT& place);

}  // namespace kvo
