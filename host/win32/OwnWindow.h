// Windows that are objects, and objects that look at the messages of other windows.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

namespace kvo {

// The file that this code is in: the program, or the component.
HINSTANCE ThisModule();

// A window of the component's own class. The window may end before the object: by its parent.
class OwnWindow {
 public:
  OwnWindow(const OwnWindow&) = delete;
  OwnWindow& operator=(const OwnWindow&) = delete;

 protected:
  struct Design {
    std::wstring text{};
    DWORD style = WS_CHILD;
    DWORD exStyle = 0;
    RECT place{};
  };

  OwnWindow() = default;
  virtual ~OwnWindow() { End(); }

  void Begin(HWND parent, const Design& design);
  // Ends the window; none of its messages comes any more.
  void End();
  // nullptr when it has ended.
  HWND Handle() const { return window_; }

  // What the class does not handle goes to Default.
  virtual LRESULT Message(UINT message, WPARAM wParam, LPARAM lParam) noexcept = 0;
  LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam) const {
    return DefWindowProcW(window_, message, wParam, lParam);
  }

 private:
  friend class OwnWindowClass;
  HWND window_ = nullptr;
};

// Sees the messages of a window before the window does, until one of the two ends.
class WindowHook {
 public:
  // Answers a message; calls Next for what is to reach the window. Must not throw.
  using Answer = std::function<LRESULT(UINT message, WPARAM wParam, LPARAM lParam)>;

  WindowHook(HWND window, Answer answer);
  WindowHook(const WindowHook&) = delete;
  WindowHook& operator=(const WindowHook&) = delete;
  ~WindowHook();

  LRESULT Next(UINT message, WPARAM wParam, LPARAM lParam) const;

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                    UINT_PTR id, DWORD_PTR hook) noexcept;

  HWND window_;
  Answer answer_;
};

// Where a window stands in its parent.
RECT PlaceInParent(HWND window);

}  // namespace kvo
