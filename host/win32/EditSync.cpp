#include "host/win32/EditSync.h"

#include <algorithm>

#include "host/win32/ShownText.h"
#include "host/win32/WideText.h"
#include "host/win32/WindowText.h"

namespace kvo {
namespace {

constexpr WPARAM kControlA = 1;  // as a character

bool IsDown(int key) { return GetKeyState(key) < 0; }

// Whether a message may move the caret, or is about to replace the selection.
bool ConcernsSelection(UINT message) {
  switch (message) {
    case WM_KEYDOWN:
    case WM_KEYUP:
    case WM_CHAR:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_LBUTTONDBLCLK:
    case WM_MOUSEMOVE:
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
    case WM_CUT:
    case WM_CLEAR:
    case WM_PASTE:
    case WM_UNDO:
    case EM_UNDO:
    case EM_SETSEL:
    case EM_REPLACESEL:
    case WM_IME_CHAR:
    case WM_IME_COMPOSITION:
      return true;
    default:
      return false;
  }
}

void PutOnClipboard(HWND owner, std::wstring_view text) {
  const std::size_t size = (text.size() + 1) * sizeof(wchar_t);
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
  if (memory == nullptr) return;
  auto* to = static_cast<wchar_t*>(GlobalLock(memory));
  std::ranges::copy(text, to);
  to[text.size()] = 0;
  GlobalUnlock(memory);
  bool taken = false;
  if (OpenClipboard(owner)) {
    EmptyClipboard();
    taken = SetClipboardData(CF_UNICODETEXT, memory) != nullptr;
    CloseClipboard();
  }
  if (!taken) GlobalFree(memory);
}

std::wstring FromClipboard(HWND owner) {
  std::wstring text;
  if (!OpenClipboard(owner)) return text;
  if (const HGLOBAL memory = GetClipboardData(CF_UNICODETEXT)) {
    if (const auto* from = static_cast<const wchar_t*>(GlobalLock(memory))) {
      const std::size_t size = GlobalSize(memory) / sizeof(wchar_t);
      text.assign(from, std::find(from, from + size, L'\0'));
      GlobalUnlock(memory);
    }
  }
  CloseClipboard();
  return text;
}

}  // namespace

EditSync::EditSync(HWND edit, EditedText& text, Lines lines, FormActions& host)
    : TextSync(text, lines, kWindowStyle, host),
      edit_(edit),
      hook_(edit, [this](UINT message, WPARAM wParam, LPARAM lParam) {
        return Message(message, wParam, lParam);
      }) {
  SendMessageW(edit_, EM_SETLIMITTEXT, 0, 0);
  SendMessageW(edit_, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, MAKELPARAM(1, 1));
}

std::u16string EditSync::Units() const { return ToUnits(TextOf(edit_)); }

void EditSync::ShowUnits(const std::u16string& units) {
  SetWindowTextW(edit_, std::wstring(units.begin(), units.end()).c_str());
}

UnitRange EditSync::Selection() const {
  DWORD start = 0;
  DWORD end = 0;
  SendMessageW(edit_, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  return {static_cast<int>(start), static_cast<int>(end - start)};
}

void EditSync::Select(const UnitRange& selection) {
  SendMessageW(edit_, EM_SETSEL, static_cast<WPARAM>(selection.start),
               selection.start + selection.length);
  SendMessageW(edit_, EM_SCROLLCARET, 0, 0);
}

// Checks the selection before and after each message that may change it, because Windows does not
// report changes.
LRESULT EditSync::Message(UINT message, WPARAM wParam, LPARAM lParam) {
  const bool concerns = ConcernsSelection(message);
  if (concerns) Selected();
  LRESULT result = 0;
  switch (message) {
    case WM_GETDLGCODE:
      // Keeps the form's selection when the box gets the focus.
      result = hook_.Next(message, wParam, lParam) & ~static_cast<LRESULT>(DLGC_HASSETSEL);
      break;
    case WM_CHAR:
      result = Character(wParam, lParam);
      break;
    case WM_KEYDOWN:
      if (wParam == 'A' && IsDown(VK_CONTROL) && !IsDown(VK_MENU))
        SendMessageW(edit_, EM_SETSEL, 0, -1);
      else if (!LeaveSelection(wParam))
        result = hook_.Next(message, wParam, lParam);
      break;
    case WM_COPY:
      Copy();
      break;
    case WM_CUT:
      Copy();
      hook_.Next(WM_CLEAR, 0, 0);
      break;
    case WM_PASTE:
      Paste();
      break;
    case WM_SETTEXT:
      result = hook_.Next(message, wParam, lParam);
      // Set by another program on the user's behalf; only single-line boxes send EN_CHANGE for it.
      if (Kind() == Lines::many) Edited();
      break;
    default:
      result = hook_.Next(message, wParam, lParam);
  }
  if (concerns) Selected();
  return result;
}

// Moves from a selection to its ends with the arrow keys.
bool EditSync::LeaveSelection(WPARAM key) {
  const bool arrow = key == VK_LEFT || key == VK_RIGHT;
  if (!arrow || IsDown(VK_SHIFT) || IsDown(VK_CONTROL) || IsDown(VK_MENU)) return false;
  const UnitRange selected = Selection();
  if (selected.length == 0) return false;
  const int caret = key == VK_LEFT ? selected.start : selected.start + selected.length;
  SendMessageW(edit_, EM_SETSEL, static_cast<WPARAM>(caret), caret);
  return true;
}

// Combines the two typed surrogates of a character, so that the form gets one character.
LRESULT EditSync::Character(WPARAM unit, LPARAM lParam) {
  if (unit == kControlA) return 0;
  const auto typed = static_cast<wchar_t>(unit);
  const wchar_t first = std::exchange(firstHalf_, wchar_t{0});
  if (IS_HIGH_SURROGATE(typed)) {
    firstHalf_ = typed;
    return 0;
  }
  if (!IS_LOW_SURROGATE(typed) || first == 0) return hook_.Next(WM_CHAR, unit, lParam);
  const wchar_t whole[] = {first, typed, 0};
  return hook_.Next(EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(whole));
}

// Copies the form's text, not the characters shown in its place.
void EditSync::Copy() const {
  const std::string selected = SelectedText();
  if (!selected.empty()) PutOnClipboard(edit_, ToWide(selected));
}

void EditSync::Paste() const {
  std::wstring text = FromClipboard(edit_);
  if (text.empty()) return;
  if (Kind() == Lines::many)
    text = WithWindowsBreaks(text);
  else
    text.resize(std::min(text.size(), text.find_first_of(L"\r\n")));
  hook_.Next(EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.c_str()));
}

}  // namespace kvo
