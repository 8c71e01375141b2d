#include "host/qt/FormView.h"

#include <QApplication>
#include <QKeyEvent>

#include "common/forms/FormKeys.h"
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

class ViewMaker final : public FormVisitor {
 public:
  ViewMaker(QWidget& parent, ViewHost& host) : parent_(parent), host_(host) {}
  std::unique_ptr<ControlView> made;

  void Visit(Label& label) override { made = std::make_unique<LabelView>(label, parent_); }
  void Visit(TextBox& box) override {
    if (box.MultiLine())
      made = std::make_unique<TextAreaView>(box, parent_, host_);
    else
      made = std::make_unique<LineView>(box, parent_, host_);
  }
  void Visit(ComboBox& box) override { Make<ComboBoxView>(box); }
  void Visit(CheckBox& box) override { Make<CheckBoxView>(box); }
  void Visit(OptionButton& button) override { Make<OptionButtonView>(button); }
  void Visit(CommandButton& button) override { Make<CommandButtonView>(button); }
  void Visit(Frame& frame) override { made = std::make_unique<FrameView>(frame, parent_); }
  void Visit(PictureBox& box) override { made = std::make_unique<PictureView>(box, parent_); }
  void Visit(TabControl& tabs) override { Make<TabControlView>(tabs); }
  void Visit(TabPanel& panel) override { made = std::make_unique<TabPanelView>(panel, host_); }
  void Visit(PropertyGrid& grid) override { Make<PropertyGridView>(grid); }
  void Visit(Grid& grid) override { Make<GridView>(grid); }
  void Visit(Timer& timer) override { Make<TimerView>(timer); }

 private:
  template <class View, class Control>
  void Make(Control& control) {
    made = std::make_unique<View>(control, parent_, host_);
  }

  QWidget& parent_;
  ViewHost& host_;
};

QRect PlaceOf(const Rect& at, const QPaintDevice& device) {
  const QPoint topLeft(ToPixels(at.left, device), ToPixels(at.top, device));
  return {topLeft, QPoint(ToPixels(at.left + at.width, device) - 1,
                          ToPixels(at.top + at.height, device) - 1)};
}

}  // namespace

std::unique_ptr<ControlView> MakeView(FormControl& control, QWidget& parent, ViewHost& host) {
  ViewMaker maker(parent, host);
  control.Accept(maker);
  return std::move(maker.made);
}

FormView::FormView(Form& form, QWidget* parent) : QWidget(parent), FormRenderer(form) {
  LoadTahoma();
  setWindowTitle(ToQt(form.Caption()));
  setFixedSize(ToPixels(form.FormSize().width, *this), ToPixels(form.FormSize().height, *this));
  Update([&] {
    Build(form, *this);
    ShowAll();
  });
  connect(qApp, &QApplication::focusChanged, this,
          [this](const QWidget*, const QWidget* now) { FocusMoved(now); });
}

FormView::~FormView() {
  // Widgets that go still move the focus and send signals; nobody listens any more.
  disconnect(qApp, nullptr, this, nullptr);
  EndActions();
  qDeleteAll(findChildren<QWidget*>(Qt::FindDirectChildrenOnly));
}

// --- making the widgets ---

void FormView::Build(Container& container, QWidget& parent) {
  for (FormControl* control : container.Controls()) {
    auto view = MakeView(*control, parent, *this);
    ControlView& made = *view;
    byControl_[control] = &made;
    views_.emplace_back(control, std::move(view));
    if (made.Widget() == nullptr) continue;
    byWidget_[made.Widget()] = control;
    SetUp(*control, *made.Widget(), made.IsPlaced());
    if (auto* inner = dynamic_cast<Container*>(control)) Build(*inner, *made.Widget());
  }
}

void FormView::SetUp(FormControl& control, QWidget& widget, bool placed) {
  widget.setObjectName(ToQt(control.Name()));
  widget.setAccessibleName(ToQt(AccessibleName(control)));
  widget.setFont(QtFont(control.TextFont()));
  if (placed) widget.setGeometry(PlaceOf(control.At(), *this));
}

void FormView::ShowAll() {
  for (const auto& [control, view] : views_) {
    view->ShowEnabled(control->Enabled());
    view->ShowVisible(control->Visible());
    view->Show(Aspect::selection);
  }
}

QWidget* FormView::WidgetOf(const FormControl& control) const {
  const auto found = byControl_.find(&control);
  return found == byControl_.end() ? nullptr : found->second->Widget();
}

ControlView& FormView::ViewOf(const FormControl& control) const { return *byControl_.at(&control); }

FormControl* FormView::ControlOf(const QWidget* widget) const {
  for (; widget != nullptr && widget != this; widget = widget->parentWidget())
    if (const auto found = byWidget_.find(widget); found != byWidget_.end()) return found->second;
  return nullptr;
}

// --- from the form to the widgets ---

void FormView::ControlChanged(FormControl& control, Aspect aspect) {
  ControlView& view = ViewOf(control);
  const bool hadFocus = HasFocusWidget();
  Update([&] {
    if (aspect == Aspect::enabled)
      view.ShowEnabled(control.Enabled());
    else if (aspect == Aspect::visible)
      view.ShowVisible(control.Visible());
    else
      view.Show(aspect);
  });
  // What can no longer be used has handed the focus on, maybe beyond the form.
  if (hadFocus && !HasFocusWidget()) FocusFirst();
}

bool FormView::HasFocusWidget() const {
  const QWidget* focused = window()->focusWidget();
  return focused != nullptr && isAncestorOf(focused);
}

void FormView::ItemChanged(PropertyGridItem& item) {
  Update([&] { ViewOf(item.Grid()).ShowItem(item); });
}

void FormView::FormUnloaded() {
  if (onUnloaded) onUnloaded();
}

// The desktop's colours may be other ones now.
void FormView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::PaletteChange) return;
  for (const auto& [control, view] : views_)
    if (dynamic_cast<TextBox*>(control)) view->Show(Aspect::color);
}

// --- from the user to the form ---

void FormView::CallForReport() {
  QMetaObject::invokeMethod(
      this, [this] { ReportFailures(); }, Qt::QueuedConnection);
}

void FormView::UserClosesWindow() {
  Act([this] { CloseWindow(); });
}

void FormView::FocusFirst() {
  for (const auto& [control, view] : views_)
    if (control->TakesFocus() && control->IsReachable() && view->Widget() != nullptr)
      return view->Widget()->setFocus(Qt::TabFocusReason);
}

void FormView::FocusMoved(const QWidget* now) {
  // The focus stays in the form while a popup has the keyboard, or another window.
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

bool FormView::PressButton(CommandButton::Role role) {
  CommandButton* button = DialogButton(Shown(), role);
  if (button != nullptr) Act([button] { Click(*button); });
  return button != nullptr;
}

}  // namespace kvo
