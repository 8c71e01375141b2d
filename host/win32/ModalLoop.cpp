#include "host/win32/ModalLoop.h"

#include <algorithm>

namespace kvo {

DisabledOwner::DisabledOwner(HWND owner) {
  const HWND root = owner == nullptr ? nullptr : GetAncestor(owner, GA_ROOT);
  if (root == nullptr || !IsWindowEnabled(root)) return;
  EnableWindow(root, FALSE);
  disabled_ = root;
}

DisabledOwner::~DisabledOwner() {
  if (disabled_ != nullptr) EnableWindow(disabled_, TRUE);
}

void RunUntil(const std::function<bool()>& ended, const std::function<bool(MSG&)>& translate) {
  MSG message{};
  while (!ended()) {
    const BOOL got = GetMessageW(&message, nullptr, 0, 0);
    if (got < 0) return;
    if (got == 0) {  // WM_QUIT: passes it on to the outer loop
      PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    if (translate(message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

POINT CentredPosition(SIZE size, HWND owner) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof(monitor);
  GetMonitorInfoW(MonitorFromWindow(owner, MONITOR_DEFAULTTOPRIMARY), &monitor);
  const RECT& work = monitor.rcWork;
  RECT over = work;
  if (owner != nullptr) GetWindowRect(GetAncestor(owner, GA_ROOT), &over);
  const LONG left = over.left + (over.right - over.left - size.cx) / 2;
  const LONG top = over.top + (over.bottom - over.top - size.cy) / 2;
  return {std::max(work.left, std::min(left, work.right - size.cx)),
          std::max(work.top, std::min(top, work.bottom - size.cy))};
}

SIZE WindowSize(SIZE inside, DWORD style, DWORD exStyle) {
  RECT around{0, 0, inside.cx, inside.cy};
  AdjustWindowRectEx(&around, style, FALSE, exStyle);
  return {around.right - around.left, around.bottom - around.top};
}

}  // namespace kvo
