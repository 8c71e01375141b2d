#include "host/qt/SimpleViews.h"

#include <QGroupBox>
#include <QKeyEvent>
#include <QStyle>
#include <QTabBar>
#include <algorithm>

#include "host/desktop/Measures.h"
#include "host/qt/QtText.h"
#include "host/qt/Twips.h"

namespace kvo {
namespace {

bool IsEnter(const QKeyEvent& event) {
  return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

bool IsArrow(const QKeyEvent& event) {
  return event.key() >= Qt::Key_Left && event.key() <= Qt::Key_Down;
}

// The enter key presses the button on which it is pressed, not the dialog's. The tab key alone
// moves the focus, here as on every desktop.
class PressedByEnter final : public QPushButton {
 public:
  using QPushButton::QPushButton;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (IsEnter(*event))
      click();
    else if (!IsArrow(*event))
      QPushButton::keyPressEvent(event);
  }
};

class CheckMark final : public QCheckBox {
 public:
  using QCheckBox::QCheckBox;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (!IsArrow(*event)) QCheckBox::keyPressEvent(event);
  }
};

// As high as forms plan it, whatever the style likes.
class FixedTabBar final : public QTabBar {
 protected:
  QSize tabSizeHint(int index) const override {
    return {QTabBar::tabSizeHint(index).width(), ToPixels(kTabRowHeight, *this)};
  }
  QSize minimumTabSizeHint(int index) const override { return tabSizeHint(index); }
};

class TabWidget final : public QTabWidget {
 public:
  explicit TabWidget(QWidget* parent) : QTabWidget(parent) {
    setTabBar(new FixedTabBar);
    setUsesScrollButtons(false);
    tabBar()->setElideMode(Qt::ElideNone);
    tabBar()->setExpanding(false);
  }
};

}  // namespace

// --- labels and boxes ---

LabelView::LabelView(Label& label, QWidget& parent, ViewHost& host)
    : ViewOf(label, host, new QLabel(&parent)) {
  widget_->setTextFormat(Qt::PlainText);
  widget_->setWordWrap(label.Wraps());
  widget_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  Show(Aspect::caption);
}

// Without a buddy, a "&" is a character here already.
void LabelView::Show(Aspect) { widget_->setText(ToQt(control_.Caption())); }

CheckBoxView::CheckBoxView(CheckBox& box, QWidget& parent, ViewHost& host)
    : ViewOf(box, host, new CheckMark(ToQtCaption(box.Caption()), &parent)) {
  Show(Aspect::checked);
  QObject::connect(widget_, &QCheckBox::clicked, widget_, [this] {
    host_.Act([this] { FormRenderer::Click(control_); });
    host_.Update([this] { Show(Aspect::checked); });  // the page may have thought otherwise
  });
}

void CheckBoxView::Show(Aspect) { widget_->setChecked(control_.Value()); }

FrameView::FrameView(const Frame& frame, QWidget& parent, ViewHost& host)
    : ViewOf(frame, host, nullptr) {
  if (!frame.Caption().empty()) {
    widget_ = new QGroupBox(ToQtCaption(frame.Caption()), &parent);
  } else {
    auto* box = new QFrame(&parent);
    const bool line = frame.At().height <= kThickestLine;
    box->setFrameShape(line ? QFrame::HLine : QFrame::Box);
    box->setFrameShadow(QFrame::Sunken);
    widget_ = box;
  }
  widget_->lower();  // what stands inside is declared beside it
}

PictureView::PictureView(const PictureBox& picture, QWidget& parent, ViewHost& host)
    : ViewOf(picture, host, new QLabel(&parent)) {
  const QIcon icon = widget_->style()->standardIcon(QStyle::SP_MessageBoxInformation);
  const int size = ToPixels(std::min(picture.At().width, picture.At().height), *widget_);
  widget_->setPixmap(icon.pixmap(QSize(size, size), widget_->devicePixelRatioF()));
}

// --- buttons ---

CommandButtonView::CommandButtonView(CommandButton& button, QWidget& parent, ViewHost& host)
    : ViewOf(button, host, new PressedByEnter(ToQtCaption(button.Caption()), &parent)) {
  widget_->setAutoDefault(false);
  widget_->setDefault(button.DialogRole() == CommandButton::Role::acceptsDialog);
  QObject::connect(widget_, &QPushButton::clicked, widget_,
                   [this] { host_.Act([this] { FormRenderer::Click(control_); }); });
}

class OptionButtonView::Radio final : public QRadioButton {
 public:
  Radio(OptionButton& button, QWidget& parent, ViewHost& host)
      : QRadioButton(ToQtCaption(button.Caption()), &parent), button_(button), host_(host) {
    setAutoExclusive(false);  // the form decides
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

OptionButtonView::OptionButtonView(OptionButton& button, QWidget& parent, ViewHost& host)
    : ViewOf(button, host, new Radio(button, parent, host)) {
  widget_->setChecked(button.Value());
  QObject::connect(widget_, &QRadioButton::clicked, widget_, [this] {
    host_.Act([this] { FormRenderer::Click(control_); });
    host_.Update([this] { Show(Aspect::checked); });
  });
}

void OptionButtonView::Show(Aspect) {
  widget_->setChecked(control_.Value());
  SetTabStops();
}

void OptionButtonView::ShowEnabled(bool enabled) {
  widget_->setEnabled(enabled);
  SetTabStops();
}

void OptionButtonView::ShowVisible(bool visible) {
  widget_->setVisible(visible);
  SetTabStops();
}

void OptionButtonView::SetTabStops() {
  const OptionButton* stop = OptionTabStop(control_.Parent());
  for (const FormControl* sibling : control_.Parent().Controls()) {
    const auto* option = dynamic_cast<const OptionButton*>(sibling);
    if (QWidget* widget = option == nullptr ? nullptr : host_.WidgetOf(*option))
      widget->setFocusPolicy(option == stop ? Qt::StrongFocus : Qt::ClickFocus);
  }
}

// --- tabs ---

TabControlView::TabControlView(TabControl& tabs, QWidget& parent, ViewHost& host)
    : ViewOf(tabs, host, new TabWidget(&parent)) {
  QObject::connect(widget_, &QTabWidget::currentChanged, widget_, [this](int tab) {
    if (tab < 0) return;
    host_.Act([this, tab] { FormRenderer::SelectTab(control_, static_cast<std::size_t>(tab)); });
  });
}

void TabControlView::Show(Aspect) {
  widget_->setCurrentIndex(static_cast<int>(control_.SelectedTab()));
}

TabPanelView::TabPanelView(const TabPanel& panel, QWidget& tabs, ViewHost&)
    : tabs_(&dynamic_cast<QTabWidget&>(tabs)), page_(new QWidget(tabs_)) {
  tabs_->addTab(page_, ToQtCaption(panel.Caption()));
}

void TabPanelView::ShowEnabled(bool enabled) {
  tabs_->setTabEnabled(tabs_->indexOf(page_), enabled);
}

void TabPanelView::ShowVisible(bool visible) {
  tabs_->setTabVisible(tabs_->indexOf(page_), visible);
}

// --- timers ---

TimerView::TimerView(Timer& timer, QWidget& parent, ViewHost& host)
    : timer_(timer), clock_(new QTimer(&parent)) {
  clock_->setObjectName(ToQt(timer.Name()));
  QObject::connect(clock_, &QTimer::timeout, clock_,
                   [this, &host] { host.Act([this] { FormRenderer::Tick(timer_); }); });
  Show(Aspect::timer);
}

void TimerView::Show(Aspect) {
  if (timer_.IsRunning() && timer_.Enabled())
    clock_->start(timer_.Interval());
  else
    clock_->stop();
}

}  // namespace kvo
