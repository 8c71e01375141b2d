// A person's actions on single windows of the component, sent as messages.
#pragma once

#include <windows.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

#include "common/forms/FormPropertyGrid.h"

namespace kvo {

std::wstring ClassOf(HWND window);
// Whether the window has this class.
bool Is(HWND window, const wchar_t* className);
// Returns the n-th visible child window of a class; nullptr if there is none.
HWND ChildOf(HWND parent, const wchar_t* className, std::size_t number = 0);
RECT Inside(HWND window);
POINT Centre(const RECT& area);

// Holds keys down for this thread during its lifetime.
class HeldKeys {
 public:
  explicit HeldKeys(std::initializer_list<int> keys);
  HeldKeys(const HeldKeys&) = delete;
  HeldKeys& operator=(const HeldKeys&) = delete;
  ~HeldKeys();

 private:
  BYTE former_[256]{};
};

// Called when the left mouse button goes down or up; may be empty. The actions below throw CannotDo
// if they are impossible.
using MouseButton = std::function<void(bool down)>;

void ClickAt(HWND window, POINT at, const MouseButton& button = {});
// `add` holds the control key. The list receives its last messages on the next dispatch.
void ClickListRow(HWND list, std::size_t row, bool add, bool twice, const MouseButton& button = {});
void ClickBelowRows(HWND list, const MouseButton& button = {});
void ClickTab(HWND tabs, std::size_t tab, const MouseButton& button = {});
// Opens a drop-down list and clicks a row.
void ChooseInList(HWND list, int row, const MouseButton& button = {});
// Returns the row that shows a text; -1 for none.
int FindInList(HWND list, std::string_view text);
// Scrolls to a property grid's row and returns its position.
RECT PlaceOfItem(HWND window, const PropertyGrid& grid, int row);
void ClickItem(HWND window, const PropertyGrid& grid, int row, const MouseButton& button = {});

}  // namespace kvo
