// Reads what native windows show.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <array>

#include "host/win32/WideText.h"
#include "host/win32/WindowText.h"
#include "tests/windows/win32/Win32User.h"

namespace kvo {
namespace {

// Includes what follows a NUL.
std::wstring ClipboardText() {
  std::wstring text;
  if (!OpenClipboard(nullptr)) return text;
  if (const HGLOBAL memory = GetClipboardData(CF_UNICODETEXT)) {
    const auto* from = static_cast<const wchar_t*>(GlobalLock(memory));
    text.assign(from, GlobalSize(memory) / sizeof(wchar_t));
    while (!text.empty() && text.back() == 0) text.pop_back();
    GlobalUnlock(memory);
  }
  CloseClipboard();
  return text;
}

std::u16string TextIn(HWND window) { return ToUnits(TextOf(window)); }

}  // namespace

// --- the desktop ---

void Win32User::PutOnClipboard(std::string_view text) {
  const std::wstring wide = ToWide(text);
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, (wide.size() + 1) * sizeof(wchar_t));
  std::copy_n(wide.c_str(), wide.size() + 1, static_cast<wchar_t*>(GlobalLock(memory)));
  GlobalUnlock(memory);
  if (!OpenClipboard(nullptr)) throw CannotDo("the clipboard is in use");
  EmptyClipboard();
  SetClipboardData(CF_UNICODETEXT, memory);
  CloseClipboard();
}

std::string Win32User::OnClipboard() { return FromWide(ClipboardText()); }

void Win32User::Settle() { PumpMessages(); }

bool Win32User::WaitUntil(const std::function<bool()>& so, int milliseconds) {
  return PumpUntil(so, milliseconds);
}

void Win32User::LookElsewhere() {
  const TestFrame other({100, 100});
  ShowWindow(other.Window(), SW_SHOW);
  SetFocus(other.Strip());
  PumpMessages();
}

void Win32User::Paint(const Grid& grid, std::size_t row) {
  SendMessageW(Shown(grid), LVM_ENSUREVISIBLE, row, FALSE);
  InvalidateRect(Shown(grid), nullptr, TRUE);
  UpdateWindow(Shown(grid));
}

void Win32User::OnFailure(std::function<void(const std::exception&)> report) {
  view_->onFailure = std::move(report);
}

// --- windows ---

std::u16string Win32User::AsShown(std::string_view text) { return ToUnits(ToWindowText(text)); }

bool Win32User::ShowsEnabled(const FormControl& control) {
  return IsWindowEnabled(Shown(control)) != FALSE;
}

bool Win32User::ShowsVisible(const FormControl& control) {
  return (GetWindowLongW(Shown(control), GWL_STYLE) & WS_VISIBLE) != 0;
}

bool Win32User::ShowsMark(const FormControl& control) {
  return SendMessageW(Shown(control), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

// Windows does not expose its timers.
bool Win32User::ShowsRunning(const Timer& timer) { return timer.IsRunning() && timer.Enabled(); }

std::u16string Win32User::ShownTextOf(const FormControl& control) { return TextIn(Shown(control)); }

UnitRange Win32User::ShownSelection(const EditBox& box) {
  HWND edit = Shown(box);
  if (Is(edit, WC_COMBOBOXW)) edit = ChildOf(edit, WC_EDITW);
  DWORD start = 0;
  DWORD end = 0;
  SendMessageW(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  return {static_cast<int>(start), static_cast<int>(end - start)};
}

std::vector<std::u16string> Win32User::ShownRows(const ComboBox& box) {
  std::vector<std::u16string> rows;
  const auto count = static_cast<std::size_t>(SendMessageW(Shown(box), CB_GETCOUNT, 0, 0));
  for (std::size_t row = 0; row < count; ++row) {
    std::wstring text(static_cast<std::size_t>(SendMessageW(Shown(box), CB_GETLBTEXTLEN, row, 0)),
                      L'\0');
    SendMessageW(Shown(box), CB_GETLBTEXT, row, reinterpret_cast<LPARAM>(text.data()));
    rows.push_back(ToUnits(text));
  }
  return rows;
}

int Win32User::ShownChoice(const ComboBox& box) {
  return static_cast<int>(SendMessageW(Shown(box), CB_GETCURSEL, 0, 0));
}

std::size_t Win32User::ShownTab(const TabControl& tabs) {
  return static_cast<std::size_t>(SendMessageW(Shown(tabs), TCM_GETCURSEL, 0, 0));
}

std::optional<std::vector<DesktopUser::CaptionAndValue>> Win32User::ShownItems(
    const PropertyGrid&) {
  return std::nullopt;
}

std::optional<int> Win32User::ShownItem(const PropertyGrid&) { return std::nullopt; }

std::optional<std::u16string> Win32User::ShownValue(const PropertyGrid& grid) {
  if (const HWND line = ChildOf(Shown(grid), WC_EDITW)) return TextIn(line);
  const HWND list = ChildOf(Shown(grid), WC_COMBOBOXW);
  if (list == nullptr) return std::nullopt;
  // A closed list draws a value that is not a choice, but does not expose it.
  const bool drawn =
      ChildOf(list, WC_EDITW) == nullptr && SendMessageW(list, CB_GETCURSEL, 0, 0) == CB_ERR;
  return drawn ? AsShown(ToText(grid.SelectedItem()->Value())) : TextIn(list);
}

std::size_t Win32User::ShownColumns(const Grid& grid) {
  const auto head = reinterpret_cast<HWND>(SendMessageW(Shown(grid), LVM_GETHEADER, 0, 0));
  return static_cast<std::size_t>(SendMessageW(head, HDM_GETITEMCOUNT, 0, 0));
}

std::size_t Win32User::ShownRecords(const Grid& grid) {
  return static_cast<std::size_t>(SendMessageW(Shown(grid), LVM_GETITEMCOUNT, 0, 0));
}

std::u16string Win32User::ShownCell(const Grid& grid, std::size_t row, std::size_t column) {
  std::array<wchar_t, 1000> text{};
  LVITEMW item{};
  item.iSubItem = static_cast<int>(column);
  item.pszText = text.data();
  item.cchTextMax = static_cast<int>(text.size());
  SendMessageW(Shown(grid), LVM_GETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item));
  return ToUnits(item.pszText);
}

std::vector<std::size_t> Win32User::ShownSelection(const Grid& grid) {
  std::vector<std::size_t> rows;
  LRESULT row = -1;
  while ((row = SendMessageW(Shown(grid), LVM_GETNEXTITEM, static_cast<WPARAM>(row),
                             LVNI_SELECTED)) >= 0)
    rows.push_back(static_cast<std::size_t>(row));
  return rows;
}

}  // namespace kvo
