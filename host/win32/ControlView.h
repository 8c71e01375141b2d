// The parts of FormWindow: one view for each control, with the window that shows it.
#pragma once

#include <windows.h>

#include <string>

#include "host/desktop/FormViews.h"

namespace kvo {

// The form around a view.
class ViewHost : public FormAround<HWND> {
 public:
  // Whether a window is getting the focus right now, when option buttons report clicks of their
  // own.
  virtual bool IsEntering() const = 0;
  // Makes FormWindow track the keyboard focus in a window.
  virtual void Watch(HWND window) = 0;
  // Schedules a call of `Later` for the window's view, after the current event.
  virtual void CallLater(HWND window) = 0;
  // The form's own window.
  virtual HWND Window() const = 0;

 protected:
  ~ViewHost() = default;
};

class ControlView : public WidgetView<HWND> {
 public:
  void ShowEnabled(bool enabled) override { EnableWindow(Widget(), enabled); }
  void ShowVisible(bool visible) override { ShowWindow(Widget(), visible ? SW_SHOWNA : SW_HIDE); }

  // --- messages from the window ---
  virtual void Command(WORD /*notification*/) {}
  virtual LRESULT Notify(NMHDR& /*notification*/) { return 0; }
  virtual void Later() {}
  virtual void Ticked() {}
  // The brush for its background; nullptr for the default.
  virtual HBRUSH Color(HDC /*device*/) { return nullptr; }

  // --- keyboard ---
  void Enter(bool /*backwards*/) override { SetFocus(Widget()); }
  // Moves the focus within the control for the Tab key; false when it leaves.
  virtual bool MoveInside(bool /*backwards*/) { return false; }
  enum class KeyUse {
    none,    // not used by the view; the form may use it
    window,  // for its window
    done,
  };
  // Handles a key for its window or a child window, before anything else does.
  virtual KeyUse Key(WPARAM /*key*/, HWND /*window*/) { return KeyUse::none; }

  // Whether it belongs below all others, because it surrounds them.
  virtual bool IsBackground() const { return false; }
  // The origin, in its window, of the positions of its child controls.
  virtual POINT Origin() const { return {0, 0}; }
};

template <class Control>
using WindowView = ViewOf<ControlView, Control, ViewHost, HWND>;

// Creates a hidden window of a standard Windows class for a control, at the control's position.
HWND MakeWindow(const FormControl& control, HWND parent, const wchar_t* className,
                const std::wstring& text, DWORD style, DWORD exStyle = 0);

// Converts a rectangle from twips to pixels.
RECT PlaceOf(const Rect& at);

}  // namespace kvo
