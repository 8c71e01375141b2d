#include "tests/windows/win32/WindowActions.h"

#include <commctrl.h>

#include <algorithm>
#include <array>

#include "host/desktop/Measures.h"
#include "host/script/FormUser.h"
#include "host/win32/Twips.h"
#include "host/win32/WindowText.h"

namespace kvo {
namespace {

constexpr BYTE kDown = 0x80;

LPARAM At(POINT at) { return MAKELPARAM(at.x, at.y); }

void Tell(const MouseButton& button, bool down) {
  if (button) button(down);
}

}  // namespace

std::wstring ClassOf(HWND window) {
  std::array<wchar_t, 64> name{};
  GetClassNameW(window, name.data(), static_cast<int>(name.size()));
  return name.data();
}

bool Is(HWND window, const wchar_t* className) {
  return _wcsicmp(ClassOf(window).c_str(), className) == 0;
}

HWND ChildOf(HWND parent, const wchar_t* className, std::size_t number) {
  HWND found = nullptr;
  while ((found = FindWindowExW(parent, found, className, nullptr)) != nullptr)
    if (IsWindowVisible(found) && number-- == 0) break;
  return found;
}

RECT Inside(HWND window) {
  RECT area{};
  GetClientRect(window, &area);
  return area;
}

POINT Centre(const RECT& area) {
  return {(area.left + area.right) / 2, (area.top + area.bottom) / 2};
}

HeldKeys::HeldKeys(std::initializer_list<int> keys) {
  GetKeyboardState(former_);
  BYTE now[256]{};
  for (const int key : keys) now[static_cast<std::size_t>(key)] = kDown;
  SetKeyboardState(now);
}

HeldKeys::~HeldKeys() { SetKeyboardState(former_); }

void ClickAt(HWND window, POINT at, const MouseButton& button) {
  Tell(button, true);
  SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, At(at));
  Tell(button, false);
  SendMessageW(window, WM_LBUTTONUP, 0, At(at));
}

void ClickListRow(HWND list, std::size_t row, bool add, bool twice, const MouseButton& button) {
  if (row >= static_cast<std::size_t>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0)))
    throw CannotDo("the list has no row " + std::to_string(row));
  SendMessageW(list, LVM_ENSUREVISIBLE, row, FALSE);
  RECT place{LVIR_BOUNDS, 0, 0, 0};
  SendMessageW(list, LVM_GETITEMRECT, row, reinterpret_cast<LPARAM>(&place));
  const LPARAM at = At({place.left + 10, Centre(place).y});
  const HeldKeys held = add ? HeldKeys({VK_CONTROL}) : HeldKeys({});
  const WPARAM keys = MK_LBUTTON | (add ? MK_CONTROL : 0);
  Tell(button, true);
  // The list waits for the button to be released.
  PostMessageW(list, WM_LBUTTONUP, keys & ~WPARAM{MK_LBUTTON}, at);
  SendMessageW(list, twice ? WM_LBUTTONDBLCLK : WM_LBUTTONDOWN, keys, at);
  Tell(button, false);
}

void ClickBelowRows(HWND list, const MouseButton& button) {
  const LPARAM at = At({10, Inside(list).bottom - 3});
  Tell(button, true);
  PostMessageW(list, WM_LBUTTONUP, 0, at);
  SendMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, at);
  Tell(button, false);
}

void ClickTab(HWND tabs, std::size_t tab, const MouseButton& button) {
  RECT place{};
  if (!SendMessageW(tabs, TCM_GETITEMRECT, tab, reinterpret_cast<LPARAM>(&place)))
    throw CannotDo("there is no tab " + std::to_string(tab));
  ClickAt(tabs, Centre(place), button);
}

void ChooseInList(HWND list, int row, const MouseButton& button) {
  const RECT closed = Inside(list);
  ClickAt(list, {closed.right - 5, closed.bottom / 2}, button);
  if (!SendMessageW(list, CB_GETDROPPEDSTATE, 0, 0)) throw CannotDo("the list does not open");
  COMBOBOXINFO info{};
  info.cbSize = sizeof(info);
  GetComboBoxInfo(list, &info);
  SendMessageW(info.hwndList, LB_SETTOPINDEX, static_cast<WPARAM>(row), 0);
  RECT place{};
  SendMessageW(info.hwndList, LB_GETITEMRECT, static_cast<WPARAM>(row),
               reinterpret_cast<LPARAM>(&place));
  const LPARAM at = At(Centre(place));
  SendMessageW(info.hwndList, WM_MOUSEMOVE, 0, at);
  SendMessageW(info.hwndList, WM_LBUTTONDOWN, MK_LBUTTON, at);
  SendMessageW(info.hwndList, WM_LBUTTONUP, 0, at);
  if (SendMessageW(list, CB_GETDROPPEDSTATE, 0, 0)) throw CannotDo("the list does not close");
}

int FindInList(HWND list, std::string_view text) {
  return static_cast<int>(SendMessageW(list, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                       reinterpret_cast<LPARAM>(ToWindowText(text).c_str())));
}

RECT PlaceOfItem(HWND window, const PropertyGrid& grid, int row) {
  const int height = ToPixels(kGridRowHeight);
  const int head = grid.Caption().empty() ? 0 : height;
  for (int turn = 0; turn < 1000; ++turn) {
    RECT at = Inside(window);
    const int first = GetScrollPos(window, SB_VERT);
    const LONG bottom = at.bottom;
    at.top = head + (row - first) * height;
    at.bottom = at.top + height;
    if (row >= first && (at.bottom <= bottom || row == first)) return at;
    SendMessageW(window, WM_VSCROLL, row < first ? SB_LINEUP : SB_LINEDOWN, 0);
  }
  throw CannotDo(std::string(grid.Name()) + ": cannot be scrolled to the row");
}

void ClickItem(HWND window, const PropertyGrid& grid, int row, const MouseButton& button) {
  const RECT place = PlaceOfItem(window, grid, row);
  ClickAt(window, {place.left + 5, Centre(place).y}, button);
}

}  // namespace kvo
