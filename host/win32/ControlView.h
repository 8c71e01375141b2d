// What FormWindow is made of: one view for each control, with the window that shows it.
#pragma once

#include <windows.h>

#include <string>

#include "host/desktop/FormViews.h"

namespace kvo {

// The form around a view.
class ViewHost : public FormAround<HWND> {
 public:
  // Whether a window is just being given the keyboard. Option buttons say that they were clicked
  // then.
  virtual bool IsEntering() const = 0;
  // Has FormWindow follow the keyboard focus into a window.
  virtual void Watch(HWND window) = 0;
  // Has `Later` called for the view of a window as soon as whatever happens now is over.
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

  // --- what the window tells ---
  virtual void Command(WORD /*notification*/) {}
  virtual LRESULT Notify(NMHDR& /*notification*/) { return 0; }
  virtual void Later() {}
  virtual void Ticked() {}
  // How its background is drawn; nullptr: as usual.
  virtual HBRUSH Color(HDC /*device*/) { return nullptr; }

  // --- keyboard ---
  void Enter(bool /*backwards*/) override { SetFocus(Widget()); }
  // The tab key goes on inside; false when it leaves.
  virtual bool MoveInside(bool /*backwards*/) { return false; }
  enum class KeyUse {
    none,    // nothing of the view's: it may mean something to the form
    window,  // its window's
    done,
  };
  // A key on its window or inside, before anybody else gets it.
  virtual KeyUse Key(WPARAM /*key*/, HWND /*window*/) { return KeyUse::none; }

  // What belongs below all others, because they stand inside.
  virtual bool IsBackground() const { return false; }
  // Where the point 0, 0 of what it holds lies in its window.
  virtual POINT Origin() const { return {0, 0}; }
};

template <class Control>
using WindowView = ViewOf<ControlView, Control, ViewHost, HWND>;

// Makes a window of one of Windows' own classes for a control, hidden, where the form has it.
HWND MakeWindow(const FormControl& control, HWND parent, const wchar_t* className,
                const std::wstring& text, DWORD style, DWORD exStyle = 0);

// A rectangle of twips in pixels.
RECT PlaceOf(const Rect& at);

}  // namespace kvo
