// What modal windows have in common.
#pragma once

#include <windows.h>

#include <functional>

namespace kvo {

// Keeps the user from a window, and the windows that belong to it, as long as it lives. It has to
// end before the dialog's window does: the owner is the next to be active.
class DisabledOwner {
 public:
  // The top-level window around `owner`; nullptr: there is none.
  explicit DisabledOwner(HWND owner);
  DisabledOwner(const DisabledOwner&) = delete;
  DisabledOwner& operator=(const DisabledOwner&) = delete;
  ~DisabledOwner();

 private:
  HWND disabled_ = nullptr;
};

// Runs the thread's windows until `ended`, or until the program is asked to end. What `translate`
// takes is not dispatched.
void RunUntil(const std::function<bool()>& ended, const std::function<bool(MSG&)>& translate);

// Where a window of that size stands in the middle of its owner, or of the screen.
POINT InTheMiddle(SIZE size, HWND owner);

// The size of a dialog's window whose inside has this size.
SIZE AroundInside(SIZE inside, DWORD style, DWORD exStyle);

inline constexpr DWORD kDialogStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
inline constexpr DWORD kDialogExStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;

}  // namespace kvo
