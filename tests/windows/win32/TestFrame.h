#pragma once

#include <windows.h>

#include <functional>

#include "host/win32/OwnWindow.h"

namespace kvo {

// A top-level window with nothing but a button, standing for a property frame's tabs.
class TestFrame final : private OwnWindow {
 public:
  explicit TestFrame(SIZE inside);
  ~TestFrame() override { End(); }

  HWND Window() const { return Handle(); }
  HWND Strip() const { return strip_; }

 private:
  LRESULT Message(UINT message, WPARAM wParam, LPARAM lParam) noexcept override {
    return Default(message, wParam, lParam);
  }

  HWND strip_;
};

// Dispatches pending messages.
void PumpMessages();
// Waits until `so` returns true; returns false on a timeout.
bool PumpUntil(const std::function<bool()>& so, int milliseconds = 5000);

}  // namespace kvo
