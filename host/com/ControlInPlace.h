#pragma once

#include "host/com/ControlState.h"
#include "host/com/Ole.h"
#include "host/win32/OwnWindow.h"

namespace kvo::com {

// IOleInPlaceObject and IOleInPlaceActiveObject: the control as a window inside the host's. The
// window shows the box. A double click opens the property pages unless the control handles it
// itself.
class ControlInPlace final : public ControlPart<IOleInPlaceObject, IOleInPlaceActiveObject> {
 public:
  explicit ControlInPlace(ControlState& state);
  ~ControlInPlace() override;

  // Creates the window inside the site's; with `ui`, also takes the keyboard focus. Throws
  // HostFailure when the site refuses.
  void Activate(bool ui);
  // Destroys the window. Does nothing when there is none.
  void Deactivate() noexcept;
  // Shows the property pages, in the host's property frame if it has one, else in the system's.
  // `owner` may be null.
  void ShowPages(HWND owner);

  // IOleWindow, the base of both
  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) noexcept override;
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) noexcept override { return E_NOTIMPL; }
  // IOleInPlaceObject
  HRESULT STDMETHODCALLTYPE InPlaceDeactivate() noexcept override;
  HRESULT STDMETHODCALLTYPE UIDeactivate() noexcept override;
  HRESULT STDMETHODCALLTYPE SetObjectRects(LPCRECT place, LPCRECT clip) noexcept override;
  HRESULT STDMETHODCALLTYPE ReactivateAndUndo() noexcept override { return INPLACE_E_NOTUNDOABLE; }
  // IOleInPlaceActiveObject. A control has no keys of its own.
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG*) noexcept override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE OnFrameWindowActivate(BOOL) noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnDocWindowActivate(BOOL) noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) noexcept override {
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE EnableModeless(BOOL) noexcept override { return S_OK; }

 private:
  // Destroyed with its parent if the host destroys that first.
  class ControlWindow final : private OwnWindow {
   public:
    ControlWindow(ControlInPlace& control, HWND parent);
    HWND Window() const { return Handle(); }

   private:
    LRESULT Message(UINT message, WPARAM wide, LPARAM lng) noexcept override;
    ControlInPlace& control_;
  };

  HWND Window() const { return window_ ? window_->Window() : nullptr; }
  void Paint();
  void DoubleClicked() noexcept;
  void UiActivate();
  // Asks the host to resize the control to its box.
  void FitToBox();
  void Place(const RECT& place, const RECT& clip);

  Pointer<IOleInPlaceSite> site_;  // set while the window exists
  std::unique_ptr<ControlWindow> window_;
  RECT place_{};
  bool uiActive_ = false;
};

}  // namespace kvo::com
