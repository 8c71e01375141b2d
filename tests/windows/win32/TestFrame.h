#pragma once

#include <windows.h>

#include <functional>

#include "host/win32/OwnWindow.h"

namespace kvo {

// A top-level window without anything of its own but a button, as a property frame has its tabs.
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

// Dispatches what waits.
void PumpMessages();
// Until something is so; false when it takes too long.
bool PumpUntil(const std::function<bool()>& so, int milliseconds = 5000);

}  // namespace kvo
