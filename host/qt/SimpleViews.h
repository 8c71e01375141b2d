// The views of labels, frames, pictures, buttons, tabs and timers.
#pragma once

#include <QCheckBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <algorithm>

#include "host/desktop/Measures.h"
#include "host/qt/ControlView.h"
#include "host/qt/QtText.h"
#include "host/qt/Twips.h"

namespace kvo {

// --- labels and boxes ---

class LabelView final : public WidgetViewOf<Label, QLabel> {
 public:
  LabelView(Label& label, QWidget& parent, ViewHost& host)
      : ViewOf(label, host, new QLabel(&parent)) {
    widget_->setTextFormat(Qt::PlainText);
    widget_->setWordWrap(label.Wraps());
    widget_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    Show(Aspect::caption);
  }
  // A QLabel without a buddy shows "&" as it is.
  void Show(Aspect) override { widget_->setText(ToQt(control_.Caption())); }
};

class FrameView final : public WidgetViewOf<const Frame, QWidget> {
 public:
  FrameView(const Frame& frame, QWidget& parent, ViewHost& host) : ViewOf(frame, host, nullptr) {
    if (!frame.Caption().empty()) {
      widget_ = new QGroupBox(ToQtCaption(frame.Caption()), &parent);
    } else {
      auto* box = new QFrame(&parent);
      const bool line = frame.At().height <= kThickestLine;
      box->setFrameShape(line ? QFrame::HLine : QFrame::Box);
      box->setFrameShadow(QFrame::Sunken);
      widget_ = box;
    }
    widget_->lower();  // below the controls that it surrounds
  }
};

class PictureView final : public WidgetViewOf<const PictureBox, QLabel> {
 public:
  PictureView(const PictureBox& picture, QWidget& parent, ViewHost& host)
      : ViewOf(picture, host, new QLabel(&parent)) {
    const QIcon icon = widget_->style()->standardIcon(QStyle::SP_MessageBoxInformation);
    const int size = ToPixels(std::min(picture.At().width, picture.At().height), *widget_);
    widget_->setPixmap(icon.pixmap(QSize(size, size), widget_->devicePixelRatioF()));
  }
};

// --- buttons ---

// Enter presses the focused button, not the dialog's default button. Arrow keys do nothing: only
// Tab moves the focus, as on the other desktops.
template <class Button>
class PressedByKeys final : public Button {
 public:
  using Button::Button;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const int key = event->key();
    if (std::is_same_v<Button, QPushButton> && (key == Qt::Key_Return || key == Qt::Key_Enter))
      this->click();
    else if (key < Qt::Key_Left || key > Qt::Key_Down)
      Button::keyPressEvent(event);
  }
};

class CommandButtonView final : public WidgetViewOf<CommandButton, QPushButton> {
 public:
  CommandButtonView(CommandButton& button, QWidget& parent, ViewHost& host)
      : ViewOf(button, host,
               new PressedByKeys<QPushButton>(ToQtCaption(button.Caption()), &parent)) {
    widget_->setAutoDefault(false);
    widget_->setDefault(button.DialogRole() == CommandButton::Role::acceptsDialog);
    QObject::connect(widget_, &QPushButton::clicked, widget_,
                     [this] { host_.Act([this] { FormRenderer::Click(control_); }); });
  }
};

// The view of a check box or option button.
template <class Control, class Button>
class MarkView : public WidgetViewOf<Control, Button> {
 public:
  void Show(Aspect) override { this->widget_->setChecked(this->control_.Value()); }

 protected:
  MarkView(Control& control, ViewHost& host, Button* button)
      : WidgetViewOf<Control, Button>(control, host, button) {
    button->setChecked(control.Value());
    QObject::connect(button, &Button::clicked, button, [this] {
      this->host_.Act([this] { FormRenderer::Click(this->control_); });
      // The page's event may have changed the value.
      this->host_.Update([this] { Show(Aspect::checked); });
    });
  }
};

class CheckBoxView final : public MarkView<CheckBox, QCheckBox> {
 public:
  CheckBoxView(CheckBox& box, QWidget& parent, ViewHost& host)
      : MarkView(box, host, new PressedByKeys<QCheckBox>(ToQtCaption(box.Caption()), &parent)) {}
};

// Tab stops at one button of a group: the chosen one, or the first. The arrow keys move to the
// others and choose them.
class OptionButtonView final : public MarkView<OptionButton, QRadioButton> {
 public:
  OptionButtonView(OptionButton& button, QWidget& parent, ViewHost& host)
      : MarkView(button, host, new Radio(button, parent, host)) {}
  void Show(Aspect aspect) override {
    MarkView::Show(aspect);
    SetTabStops();
  }
  void ShowEnabled(bool enabled) override {
    widget_->setEnabled(enabled);
    SetTabStops();
  }
  void ShowVisible(bool visible) override {
    widget_->setVisible(visible);
    SetTabStops();
  }

 private:
  class Radio final : public QRadioButton {
   public:
    Radio(OptionButton& button, QWidget& parent, ViewHost& host)
        : QRadioButton(ToQtCaption(button.Caption()), &parent), button_(button), host_(host) {
      setAutoExclusive(false);  // the form does that
    }

   protected:
    void keyPressEvent(QKeyEvent* event) override {
      switch (event->key()) {
        case Qt::Key_Up:
        case Qt::Key_Left:
          return Step(-1);
        case Qt::Key_Down:
        case Qt::Key_Right:
          return Step(1);
        default:
          QRadioButton::keyPressEvent(event);
      }
    }

   private:
    void Step(int step) {
      OptionButton* next = NextOption(button_, step);
      if (next == nullptr) return;
      host_.WidgetOf(*next)->setFocus(Qt::OtherFocusReason);
      host_.Act([next] { FormRenderer::Click(*next); });
    }

    OptionButton& button_;
    ViewHost& host_;
  };

  void SetTabStops() {
    const OptionButton* stop = OptionTabStop(control_.Parent());
    for (const FormControl* sibling : control_.Parent().Controls()) {
      const auto* option = dynamic_cast<const OptionButton*>(sibling);
      if (QWidget* widget = option == nullptr ? nullptr : host_.WidgetOf(*option))
        widget->setFocusPolicy(option == stop ? Qt::StrongFocus : Qt::ClickFocus);
    }
  }
};

// --- tabs ---

class TabControlView final : public WidgetViewOf<TabControl, QTabWidget> {
 public:
  TabControlView(TabControl& tabs, QWidget& parent, ViewHost& host)
      : ViewOf(tabs, host, new Tabs(&parent)) {
    QObject::connect(widget_, &QTabWidget::currentChanged, widget_, [this](int tab) {
      if (tab < 0) return;
      host_.Act([this, tab] { FormRenderer::SelectTab(control_, static_cast<std::size_t>(tab)); });
    });
  }
  void Show(Aspect) override { widget_->setCurrentIndex(static_cast<int>(control_.SelectedTab())); }

 private:
  // Has the height from the form's design instead of the style's.
  class Bar final : public QTabBar {
   protected:
    QSize tabSizeHint(int index) const override {
      return {QTabBar::tabSizeHint(index).width(), ToPixels(kTabRowHeight, *this)};
    }
    QSize minimumTabSizeHint(int index) const override { return tabSizeHint(index); }
  };
  class Tabs final : public QTabWidget {
   public:
    explicit Tabs(QWidget* parent) : QTabWidget(parent) {
      setTabBar(new Bar);
      setUsesScrollButtons(false);
      tabBar()->setElideMode(Qt::ElideNone);
      tabBar()->setExpanding(false);
    }
  };
};

class TabPanelView final : public ControlView {
 public:
  TabPanelView(const TabPanel& panel, QWidget& tabs, ViewHost&)
      : tabs_(&dynamic_cast<QTabWidget&>(tabs)), page_(new QWidget(tabs_)) {
    tabs_->addTab(page_, ToQtCaption(panel.Caption()));
  }
  QWidget* Widget() const override { return page_; }
  void ShowEnabled(bool enabled) override { tabs_->setTabEnabled(tabs_->indexOf(page_), enabled); }
  void ShowVisible(bool visible) override { tabs_->setTabVisible(tabs_->indexOf(page_), visible); }
  bool IsPlaced() const override { return false; }

 private:
  QTabWidget* tabs_;
  QWidget* page_;
};

// --- timers ---

class TimerView final : public ControlView {
 public:
  TimerView(Timer& timer, QWidget& parent, ViewHost& host)
      : timer_(timer), clock_(new QTimer(&parent)) {
    clock_->setObjectName(ToQt(timer.Name()));
    QObject::connect(clock_, &QTimer::timeout, clock_,
                     [this, &host] { host.Act([this] { FormRenderer::Tick(timer_); }); });
    Show(Aspect::timer);
  }
  QWidget* Widget() const override { return nullptr; }
  void Show(Aspect) override {
    if (timer_.IsRunning() && timer_.Enabled())
      clock_->start(timer_.Interval());
    else
      clock_->stop();
  }
  void ShowEnabled(bool) override { Show(Aspect::timer); }

 private:
  Timer& timer_;
  QTimer* clock_;
};

}  // namespace kvo
