// What a person does to single windows of the component, as messages to them.
#pragma once

#include <windows.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

#include "common/forms/FormPropertyGrid.h"

namespace kvo {

std::wstring ClassOf(HWND window);
// By class.
bool Is(HWND window, const wchar_t* className);
// The n-th window of a class in another one that shows; nullptr when there is none.
HWND ChildOf(HWND parent, const wchar_t* className, std::size_t number = 0);
RECT Inside(HWND window);
POINT Centre(const RECT& area);

// Holds keys down for this thread.
class HeldKeys {
 public:
  explicit HeldKeys(std::initializer_list<int> keys);
  HeldKeys(const HeldKeys&) = delete;
  HeldKeys& operator=(const HeldKeys&) = delete;
  ~HeldKeys();

 private:
  BYTE former_[256]{};
};

// Told when the left mouse button goes down and comes up; may be empty. What cannot be done throws
// CannotDo.
using MouseButton = std::function<void(bool down)>;

void ClickAt(HWND window, POINT at, const MouseButton& button = {});
// `add`: with the control key. The list gets its last messages when messages are next dispatched.
void ClickListRow(HWND list, std::size_t row, bool add, bool twice, const MouseButton& button = {});
void ClickBelowRows(HWND list, const MouseButton& button = {});
void ClickTab(HWND tabs, std::size_t tab, const MouseButton& button = {});
// Opens a drop-down list and clicks a row.
void ChooseInList(HWND list, int row, const MouseButton& button = {});
// The row that shows a text, -1 for none.
int FindInList(HWND list, std::string_view text);
// Where a row of a property grid stands, once it was scrolled to.
RECT PlaceOfItem(HWND window, const PropertyGrid& grid, int row);
void ClickItem(HWND window, const PropertyGrid& grid, int row, const MouseButton& button = {});

}  // namespace kvo
