#include "tests/windows/win32/TestFrame.h"

#include <commctrl.h>

#include <chrono>

namespace kvo {

void PumpMessages() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

bool PumpUntil(const std::function<bool()>& so, int milliseconds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
  while (!so()) {
    if (std::chrono::steady_clock::now() > end) return false;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    PumpMessages();
  }
  return true;
}

TestFrame::TestFrame(SIZE inside) {
  RECT around{0, 0, inside.cx, inside.cy};
  constexpr DWORD kStyle = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
  AdjustWindowRect(&around, kStyle, FALSE);
  Begin(nullptr,
        {.text = L"Rahmen",
         .style = kStyle,
         .place = {20, 20, 20 + around.right - around.left, 20 + around.bottom - around.top}});
  strip_ = CreateWindowExW(0, WC_BUTTONW, L"Reiter", WS_CHILD | WS_VISIBLE, 0, 0, 1, 1, Handle(),
                           nullptr, ThisModule(), nullptr);
}

}  // namespace kvo
