// The views of what the user only sees, clicks, or opens.
#pragma once

#include <QTabWidget>
#include <QTimer>

#include "host/qt/ControlView.h"

class QCheckBox;
class QLabel;
class QPushButton;
class QRadioButton;

namespace kvo {

class LabelView final : public ControlView {
 public:
  LabelView(Label& label, QWidget& parent, ViewHost&);
  QWidget* Widget() const override;
  void Show(Aspect aspect) override;

 private:
  Label& label_;
  QLabel* widget_;
};

class CheckBoxView final : public ControlView {
 public:
  CheckBoxView(CheckBox& box, QWidget& parent, ViewHost& host);
  QWidget* Widget() const override;
  void Show(Aspect aspect) override;

 private:
  CheckBox& box_;
  QCheckBox* widget_;
};

// Of the buttons of a group only one is reached by the tab key: the chosen one, or the first. The
// arrow keys go to the others, and choose them.
class OptionButtonView final : public ControlView {
 public:
  OptionButtonView(OptionButton& button, QWidget& parent, ViewHost& host);
  QWidget* Widget() const override;
  void Show(Aspect aspect) override;
  void ShowEnabled(bool enabled) override;
  void ShowVisible(bool visible) override;

 private:
  class Radio;
  void SetTabStops();

  OptionButton& button_;
  ViewHost& host_;
  QRadioButton* widget_;
};

class CommandButtonView final : public ControlView {
 public:
  CommandButtonView(CommandButton& button, QWidget& parent, ViewHost& host);
  QWidget* Widget() const override;
  void Show(Aspect) override {}

 private:
  QPushButton* widget_;
};

class FrameView final : public ControlView {
 public:
  FrameView(const Frame& frame, QWidget& parent, ViewHost&);
  QWidget* Widget() const override { return widget_; }
  void Show(Aspect) override {}

 private:
  QWidget* widget_;
};

class PictureView final : public ControlView {
 public:
  PictureView(const PictureBox& picture, QWidget& parent, ViewHost&);
  QWidget* Widget() const override;
  void Show(Aspect) override {}

 private:
  QLabel* widget_;
};

class TabControlView final : public ControlView {
 public:
  TabControlView(TabControl& tabs, QWidget& parent, ViewHost& host);
  QWidget* Widget() const override { return widget_; }
  void Show(Aspect aspect) override;

 private:
  TabControl& tabs_;
  QTabWidget* widget_;
};

class TabPanelView final : public ControlView {
 public:
  TabPanelView(const TabPanel& panel, QWidget& tabs, ViewHost&);
  QWidget* Widget() const override { return page_; }
  void Show(Aspect) override {}
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
