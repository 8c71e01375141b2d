// The views of what the user only sees, clicks, or opens.
#pragma once

#include "host/win32/ControlView.h"
#include "host/win32/OwnWindow.h"

namespace kvo {

class LabelView final : public WindowView<Label> {
 public:
  LabelView(Label& label, HWND parent, ViewHost& host);
  void Show(Aspect aspect) override;
};

class CheckBoxView final : public WindowView<CheckBox> {
 public:
  CheckBoxView(CheckBox& box, HWND parent, ViewHost& host);
  void Show(Aspect aspect) override;
  void Command(WORD notification) override;
};

// The arrow keys go to the other buttons of a group, and choose them.
class OptionButtonView final : public WindowView<OptionButton> {
 public:
  OptionButtonView(OptionButton& button, HWND parent, ViewHost& host);
  void Show(Aspect aspect) override;
  void Command(WORD notification) override;
  KeyUse Key(WPARAM key, HWND window) override;

 private:
  KeyUse Step(int step);
};

class CommandButtonView final : public WindowView<CommandButton> {
 public:
  CommandButtonView(CommandButton& button, HWND parent, ViewHost& host);
  void Command(WORD notification) override;
  KeyUse Key(WPARAM key, HWND window) override;

 private:
  KeyUse Press();
};

class FrameView final : public WindowView<const Frame> {
 public:
  FrameView(const Frame& frame, HWND parent, ViewHost& host);
  bool IsBackground() const override { return true; }
};

class PictureView final : public WindowView<const PictureBox> {
 public:
  PictureView(const PictureBox& picture, HWND parent, ViewHost& host);
};

class TabControlView final : public WindowView<TabControl> {
 public:
  TabControlView(TabControl& tabs, HWND parent, ViewHost& host);
  void Show(Aspect aspect) override;
  LRESULT Notify(NMHDR& notification) override;
};

// Hands what its controls tell on to the form.
class TabPanelView final : public ControlView, private OwnWindow {
 public:
  TabPanelView(const TabPanel& panel, HWND tabs, ViewHost& host);
  ~TabPanelView() override { End(); }
  HWND Widget() const override { return Handle(); }
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
