// The views of what the user only sees, clicks, or opens.
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTimer>

#include "host/qt/ControlView.h"

namespace kvo {

class LabelView final : public WidgetViewOf<Label, QLabel> {
 public:
  LabelView(Label& label, QWidget& parent, ViewHost& host);
  void Show(Aspect aspect) override;
};

class CheckBoxView final : public WidgetViewOf<CheckBox, QCheckBox> {
 public:
  CheckBoxView(CheckBox& box, QWidget& parent, ViewHost& host);
  void Show(Aspect aspect) override;
};

// Of the buttons of a group only one is reached by the tab key: the chosen one, or the first. The
// arrow keys go to the others, and choose them.
class OptionButtonView final : public WidgetViewOf<OptionButton, QRadioButton> {
 public:
  OptionButtonView(OptionButton& button, QWidget& parent, ViewHost& host);
  void Show(Aspect aspect) override;
  void ShowEnabled(bool enabled) override;
  void ShowVisible(bool visible) override;

 private:
  class Radio;
  void SetTabStops();
};

class CommandButtonView final : public WidgetViewOf<CommandButton, QPushButton> {
 public:
  CommandButtonView(CommandButton& button, QWidget& parent, ViewHost& host);
};

class FrameView final : public WidgetViewOf<const Frame, QWidget> {
 public:
  FrameView(const Frame& frame, QWidget& parent, ViewHost& host);
};

class PictureView final : public WidgetViewOf<const PictureBox, QLabel> {
 public:
  PictureView(const PictureBox& picture, QWidget& parent, ViewHost& host);
};

class TabControlView final : public WidgetViewOf<TabControl, QTabWidget> {
 public:
  TabControlView(TabControl& tabs, QWidget& parent, ViewHost& host);
  void Show(Aspect aspect) override;
};

class TabPanelView final : public ControlView {
 public:
  TabPanelView(const TabPanel& panel, QWidget& tabs, ViewHost&);
  QWidget* Widget() const override { return page_; }
  void ShowEnabled(bool enabled) override;
  void ShowVisible(bool visible) override;
  bool IsPlaced() const override { return false; }

 private:
  QTabWidget* tabs_;
  QWidget* page_;
};

class TimerView final : public ControlView {
 public:
  TimerView(Timer& timer, QWidget& parent, ViewHost& host);
  QWidget* Widget() const override { return nullptr; }
  void Show(Aspect aspect) override;
  void ShowEnabled(bool) override { Show(Aspect::timer); }

 private:
  Timer& timer_;
  QTimer* clock_;
};

}  // namespace kvo
