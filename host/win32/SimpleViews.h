// The views of what the user only sees, clicks, or opens.
#pragma once

#include "host/win32/ControlView.h"
#include "host/win32/OwnWindow.h"

namespace kvo {

class LabelView final : public ControlView {
 public:
  LabelView(Label& label, HWND parent, ViewHost&);
  HWND Widget() const override { return window_; }
  void Show(Aspect aspect) override;

 private:
  Label& label_;
  HWND window_;
};

class CheckBoxView final : public ControlView {
 public:
  CheckBoxView(CheckBox& box, HWND parent, ViewHost& host);
  HWND Widget() const override { return window_; }
  void Show(Aspect aspect) override;
  void Command(WORD notification) override;

 private:
  CheckBox& box_;
  ViewHost& host_;
  HWND window_;
};

// The arrow keys go to the other buttons of a group, and choose them.
class OptionButtonView final : public ControlView {
 public:
  OptionButtonView(OptionButton& button, HWND parent, ViewHost& host);
  HWND Widget() const override { return window_; }
  void Show(Aspect aspect) override;
  void Command(WORD notification) override;
  KeyUse Key(WPARAM key, HWND window) override;

 private:
  KeyUse Step(int step);

  OptionButton& button_;
  ViewHost& host_;
  HWND window_;
};

class CommandButtonView final : public ControlView {
 public:
  CommandButtonView(CommandButton& button, HWND parent, ViewHost& host);
  HWND Widget() const override { return window_; }
  void Show(Aspect) override {}
  void Command(WORD notification) override;
  KeyUse Key(WPARAM key, HWND window) override;

 private:
  KeyUse Press();

  CommandButton& button_;
  ViewHost& host_;
  HWND window_;
};

class FrameView final : public ControlView {
 public:
  FrameView(const Frame& frame, HWND parent, ViewHost&);
  HWND Widget() const override { return window_; }
  void Show(Aspect) override {}
  bool IsBackground() const override { return true; }

 private:
  HWND window_;
};

class PictureView final : public ControlView {
 public:
  PictureView(const PictureBox& picture, HWND parent, ViewHost&);
  ~PictureView() override;
  HWND Widget() const override { return window_; }
  void Show(Aspect) override {}

 private:
  HWND window_;
  HICON icon_ = nullptr;
};

class TabControlView final : public ControlView {
 public:
  TabControlView(TabControl& tabs, HWND parent, ViewHost& host);
  HWND Widget() const override { return window_; }
  void Show(Aspect aspect) override;
  LRESULT Notify(NMHDR& notification) override;

 private:
  TabControl& tabs_;
  ViewHost& host_;
  HWND window_;
};

// Hands what its controls tell on to the form.
class TabPanelView final : public ControlView, private OwnWindow {
 public:
  TabPanelView(const TabPanel& panel, HWND tabs, ViewHost& host);
  ~TabPanelView() override { End(); }
  HWND Widget() const override { return Handle(); }
  void Show(Aspect) override {}
  // The tabs decide.
  void ShowVisible(bool) override {}
  POINT Origin() const override;

 private:
  LRESULT Message(UINT message, WPARAM wParam, LPARAM lParam) noexcept override;

  ViewHost& host_;
};

class TimerView final : public ControlView {
 public:
  TimerView(Timer& timer, HWND, ViewHost& host) : timer_(timer), host_(host) {}
  HWND Widget() const override { return nullptr; }
  void Show(Aspect aspect) override;
  void ShowEnabled(bool) override { Show(Aspect::timer); }
  void ShowVisible(bool) override {}
  void Ticked() override;

 private:
  // Its number in the form's window.
  UINT_PTR Id() const { return reinterpret_cast<UINT_PTR>(this); }

  Timer& timer_;
  ViewHost& host_;
};

// The other kinds of buttons act as push buttons do.
bool IsClick(WORD notification);

}  // namespace kvo
