// Windows as objects, and hooks for the messages of other windows.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

namespace kvo {

// The module that contains this code: the program, or the component.
HINSTANCE ThisModule();

// A window of the component's own class. Its parent may destroy it before the object.
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
  // Destroys the window; no further message arrives.
  void End();
  // nullptr once it is destroyed.
  HWND Handle() const { return window_; }

  // Handles a message; passes unknown ones to Default.
  virtual LRESULT Message(UINT message, WPARAM wParam, LPARAM lParam) noexcept = 0;
  LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam) const {
    return DefWindowProcW(window_, message, wParam, lParam);
  }

 private:
  friend class OwnWindowClass;
  HWND window_ = nullptr;
};

// Intercepts a window's messages until it or the window is destroyed.
class WindowHook {
 public:
  // Handles a message; calls Next to pass it to the window. Must not throw.
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

// A window's rectangle in its parent.
RECT PlaceInParent(HWND window);

}  // namespace kvo
