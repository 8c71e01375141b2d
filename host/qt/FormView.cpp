#include "host/qt/FormView.h"

#include <QApplication>
#include <QKeyEvent>

#include "host/qt/AccessibleName.h"
#include "host/qt/EditViews.h"
#include "host/qt/GridView.h"
#include "host/qt/PropertyGridView.h"
#include "host/qt/QtText.h"
#include "host/qt/SimpleViews.h"
#include "host/qt/TahomaFont.h"
#include "host/qt/Twips.h"

namespace kvo {
namespace {

QRect PlaceOf(const Rect& at, const QPaintDevice& device) {
  const QPoint topLeft(ToPixels(at.left, device), ToPixels(at.top, device));
  return {topLeft, QPoint(ToPixels(at.left + at.width, device) - 1,
                          ToPixels(at.top + at.height, device) - 1)};
}

}  // namespace

FormView::FormView(Form& form, QWidget* parent) : QWidget(parent), FormViews(form) {
  LoadTahoma();
  setWindowTitle(ToQt(form.Caption()));
  setFixedSize(ToPixels(form.FormSize().width, *this), ToPixels(form.FormSize().height, *this));
  Update([&] {
    Build(form, this);
    ShowAll();
  });
  connect(qApp, &QApplication::focusChanged, this,
          [this](QWidget*, QWidget* now) { FocusMoved(now); });
}

FormView::~FormView() {
  // Ignores signals during widget destruction, which still moves the focus.
  disconnect(qApp, nullptr, this, nullptr);
  EndActions();
  qDeleteAll(findChildren<QWidget*>(Qt::FindDirectChildrenOnly));
}

std::unique_ptr<ControlView> FormView::MakeView(FormControl& control, QWidget* parent) {
  return MakeOneOf<ControlView, QWidget&, ViewHost, LabelView, TextBoxView, ComboBoxView,
                   CheckBoxView, OptionButtonView, CommandButtonView, FrameView, PictureView,
                   TabControlView, TabPanelView, PropertyGridView, GridView, TimerView>(
      control, *parent, *this);
}

void FormView::SetUp(FormControl& control, ControlView& view, const ControlView*) {
  QWidget& widget = *view.Widget();
  widget.setObjectName(ToQt(control.Name()));
  widget.setAccessibleName(ToQt(AccessibleName(control)));
  widget.setFont(QtFont(control.TextFont()));
  if (view.IsPlaced()) widget.setGeometry(PlaceOf(control.At(), *this));
}

// The desktop's colours may have changed.
void FormView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::PaletteChange) return;
  for (const auto& [control, view] : Views())
    if (dynamic_cast<TextBox*>(control)) view->Show(Aspect::color);
}

void FormView::CallForReport() {
  QMetaObject::invokeMethod(
      this, [this] { ReportFailures(); }, Qt::QueuedConnection);
}

bool FormView::HasFocus() const {
  const QWidget* focused = window()->focusWidget();
  return focused != nullptr && isAncestorOf(focused);
}

// Brings the focus back if Qt has already moved it out of the form.
void FormView::HandFocusOn() {
  if (!HasFocus()) FocusFirst();
}

void FormView::FocusMoved(QWidget* now) {
  // The form keeps its focus while a popup or another window has the keyboard.
  if (now == nullptr || now->window() != window()) return;
  if (IsUpdating()) {
    QMetaObject::invokeMethod(
        this, [this] { FocusMoved(QApplication::focusWidget()); }, Qt::QueuedConnection);
    return;
  }
  FormControl* control = ControlOf(now);
  Act([&] { Focus(control != nullptr && control->TakesFocus() ? control : nullptr); });
}

void FormView::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const bool escape = event->key() == Qt::Key_Escape;
  if (enter && PressButton(CommandButton::Role::acceptsDialog)) return;
  if (escape && PressButton(CommandButton::Role::cancelsDialog)) return;
  QWidget::keyPressEvent(event);
}

}  // namespace kvo
