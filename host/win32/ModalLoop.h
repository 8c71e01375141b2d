// Helpers for modal windows.
#pragma once

#include <windows.h>

#include <functional>

namespace kvo {

// Disables a window, and the windows it owns, during its lifetime. Must end before the dialog's
// window is destroyed, because Windows then activates the owner.
class DisabledOwner {
 public:
  // Disables the top-level window of `owner`; nothing for nullptr.
  explicit DisabledOwner(HWND owner);
  DisabledOwner(const DisabledOwner&) = delete;
  DisabledOwner& operator=(const DisabledOwner&) = delete;
  ~DisabledOwner();

 private:
  HWND disabled_ = nullptr;
};

// Runs the message loop until `ended` returns true or the program quits. Does not dispatch messages
// for which `translate` returns true.
void RunUntil(const std::function<bool()>& ended, const std::function<bool(MSG&)>& translate);

// The position of a window of that size in the middle of its owner, or of the screen.
POINT CentredPosition(SIZE size, HWND owner);

// The size of a dialog window with this client size.
SIZE WindowSize(SIZE inside, DWORD style, DWORD exStyle);

inline constexpr DWORD kDialogStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
inline constexpr DWORD kDialogExStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;

}  // namespace kvo
