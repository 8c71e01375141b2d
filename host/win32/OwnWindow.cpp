#include "host/win32/OwnWindow.h"

#include <commctrl.h>

#include <system_error>

namespace kvo {

// The window class, registered while the component is loaded.
class OwnWindowClass {
 public:
  static constexpr const wchar_t* kName = L"KVOPDesignObjects.Window";

  OwnWindowClass() {
    WNDCLASSEXW design{};
    design.cbSize = sizeof(design);
    design.style = CS_DBLCLKS;
    design.lpfnWndProc = Procedure;
    design.hInstance = ThisModule();
    design.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    design.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    design.lpszClassName = kName;
    RegisterClassExW(&design);
  }
  OwnWindowClass(const OwnWindowClass&) = delete;
  OwnWindowClass& operator=(const OwnWindowClass&) = delete;
  ~OwnWindowClass() { UnregisterClassW(kName, ThisModule()); }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam,
                                    LPARAM lParam) noexcept {
    if (message == WM_NCCREATE) {
      auto* made =
          static_cast<OwnWindow*>(reinterpret_cast<const CREATESTRUCTW*>(lParam)->lpCreateParams);
      made->window_ = window;
      SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(made));
    }
    auto* object = reinterpret_cast<OwnWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (object == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    if (message != WM_NCDESTROY) return object->Message(message, wParam, lParam);
    const LRESULT result = object->Message(message, wParam, lParam);
    SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    object->window_ = nullptr;
    return result;
  }
};

HINSTANCE ThisModule() {
  HMODULE module = nullptr;
  constexpr DWORD kFlags =
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  static const wchar_t here = 0;
  GetModuleHandleExW(kFlags, &here, &module);
  return module;
}

void OwnWindow::Begin(HWND parent, const Design& design) {
  static const OwnWindowClass registered;
  const RECT& at = design.place;
  CreateWindowExW(design.exStyle, OwnWindowClass::kName, design.text.c_str(), design.style, at.left,
                  at.top, at.right - at.left, at.bottom - at.top, parent, nullptr, ThisModule(),
                  this);
  if (window_ == nullptr)
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(),
                            "CreateWindowEx");
}

void OwnWindow::End() {
  if (window_ == nullptr) return;
  const HWND window = window_;
  window_ = nullptr;
  SetWindowLongPtrW(window, GWLP_USERDATA, 0);
  DestroyWindow(window);
}

WindowHook::WindowHook(HWND window, Answer answer) : window_(window), answer_(std::move(answer)) {
  SetWindowSubclass(window_, Procedure, reinterpret_cast<UINT_PTR>(this),
                    reinterpret_cast<DWORD_PTR>(this));
}

WindowHook::~WindowHook() {
  if (window_ != nullptr)
    RemoveWindowSubclass(window_, Procedure, reinterpret_cast<UINT_PTR>(this));
}

LRESULT WindowHook::Next(UINT message, WPARAM wParam, LPARAM lParam) const {
  return window_ == nullptr ? 0 : DefSubclassProc(window_, message, wParam, lParam);
}

LRESULT CALLBACK WindowHook::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                       UINT_PTR id, DWORD_PTR hook) noexcept {
  auto& self = *reinterpret_cast<WindowHook*>(hook);
  if (message == WM_NCDESTROY) {
    RemoveWindowSubclass(window, Procedure, id);
    self.window_ = nullptr;
    return DefSubclassProc(window, message, wParam, lParam);
  }
  return self.answer_(message, wParam, lParam);
}

RECT PlaceInParent(HWND window) {
  RECT place{};
  GetWindowRect(window, &place);
  MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&place), 2);
  return place;
}

}  // namespace kvo
