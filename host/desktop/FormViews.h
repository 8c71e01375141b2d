// The base of the desktop renderers: one view for each control of a form, with the toolkit's widget
// that shows it. `Widget` is the toolkit's widget pointer.
#pragma once

#include <concepts>
#include <functional>
#include <memory>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "common/forms/FormActions.h"
#include "common/forms/FormKeys.h"

namespace kvo {

// The form around a view.
template <class Widget>
class FormAround : public FormActions {
 public:
  // nullptr for controls without one.
  virtual Widget WidgetOf(const FormControl& control) const = 0;

 protected:
  ~FormAround() = default;
};

template <class WidgetPointer>
class WidgetView {
 public:
  WidgetView() = default;
  WidgetView(const WidgetView&) = delete;
  WidgetView& operator=(const WidgetView&) = delete;
  virtual ~WidgetView() = default;

  // nullptr for controls without one (timers). Destroyed with its parent.
  virtual WidgetPointer Widget() const = 0;
  // Updates an aspect of the widget from the control; called within FormActions::Update.
  virtual void Show(Aspect /*aspect*/) {}
  virtual void ShowItem(PropertyGridItem& /*item*/) {}
  virtual void ShowEnabled(bool enabled) = 0;
  virtual void ShowVisible(bool visible) = 0;
  // Takes the keyboard focus, as by the Tab key.
  virtual void Enter(bool backwards) = 0;
};

// Base of most views. `View` is the toolkit's.
template <class View, class Control, class Host, class OwnWidget>
class ViewOf : public View {
 public:
  OwnWidget Widget() const override { return widget_; }

 protected:
  ViewOf(Control& control, Host& host, OwnWidget widget)
      : control_(control), host_(host), widget_(widget) {}

  Control& control_;
  Host& host_;
  OwnWidget widget_;
};

// Creates a control's view: the one of `Views` that is constructible from a control of its kind, a
// parent and a host.
template <class View, class Parent, class Host, class... Views>
std::unique_ptr<View> MakeOneOf(FormControl& control, Parent parent, Host& host) {
  return WithKind(control, [&]<class Control>(Control& kind) {
    constexpr int kFitting = (0 + ... + std::constructible_from<Views, Control&, Parent, Host&>);
    static_assert(kFitting == 1, "each kind of control must have exactly one view");
    std::unique_ptr<View> made;
    const auto make = [&]<class Candidate>(std::type_identity<Candidate>) {
      if constexpr (std::constructible_from<Candidate, Control&, Parent, Host&>)
        made = std::make_unique<Candidate>(kind, parent, host);
    };
    (make(std::type_identity<Views>()), ...);
    return made;
  });
}

// A form with its views. Must be destroyed before the form, and not while a user action runs
// (IsBusy). `View` is the toolkit's WidgetView, `Host` its FormAround.
template <class View, class Host>
class FormViews : protected FormRenderer, protected Host {
 public:
  using Widget = decltype(std::declval<const View&>().Widget());

  using Host::IsBusy;
  using Host::onFailure;
  // The dialog was unloaded (modal forms).
  std::function<void()> onUnloaded;

  // The widget that shows a control; nullptr for controls without one (timers).
  Widget WidgetOf(const FormControl& control) const override {
    const auto found = byControl_.find(&control);
    return found == byControl_.end() ? nullptr : found->second->Widget();
  }
  // Finds the control of this widget or of its nearest ancestor that has one; nullptr when there is
  // none.
  FormControl* ControlOf(Widget widget) const {
    for (; widget != nullptr; widget = ParentOf(widget))
      if (const auto found = byWidget_.find(widget); found != byWidget_.end()) return found->second;
    return nullptr;
  }

  // Moves the focus to the first input that can take it.
  void FocusFirst() {
    for (const auto& [control, view] : views_)
      if (IsTabStop(*control)) return view->Enter(false);
  }
  // The user closes the window with its close button.
  void UserClosesWindow() {
    this->Act([this] { CloseWindow(); });
  }

 protected:
  using FormRenderer::FormRenderer;

  // In tab order.
  const auto& Views() const { return views_; }
  View& ViewOf(const FormControl& control) const { return *byControl_.at(&control); }

  // Creates the views of the container's controls, and of theirs. `around` is the container's own
  // view, nullptr for the form.
  void Build(Container& container, Widget parent, const View* around = nullptr) {
    for (FormControl* control : container.Controls()) {
      View& made = *views_.emplace_back(control, MakeView(*control, parent)).second;
      byControl_[control] = &made;
      if (made.Widget() == nullptr) continue;
      byWidget_[made.Widget()] = control;
      SetUp(*control, made, around);
      if (auto* inner = dynamic_cast<Container*>(control)) Build(*inner, made.Widget(), &made);
    }
  }
  void ShowAll() {
    for (const auto& [control, view] : views_) {
      view->ShowEnabled(control->Enabled());
      view->ShowVisible(control->Visible());
      view->Show(Aspect::selection);
    }
  }

  // Presses the dialog's button of a role; false when there is none.
  bool PressButton(CommandButton::Role role) {
    CommandButton* button = DialogButton(Shown(), role);
    if (button != nullptr) this->Act([button] { Click(*button); });
    return button != nullptr;
  }

 private:
  // --- the toolkit's part ---
  virtual std::unique_ptr<View> MakeView(FormControl& control, Widget parent) = 0;
  virtual void SetUp(FormControl& /*control*/, View& /*view*/, const View* /*around*/) {}
  virtual Widget ParentOf(Widget widget) const = 0;
  virtual bool HasFocus() const = 0;
  // Moves the focus on if the focused widget is now disabled or hidden.
  virtual void HandFocusOn() = 0;

  // --- FormRenderer ---
  void ControlChanged(FormControl& control, Aspect aspect) override {
    View& view = ViewOf(control);
    const bool hadFocus = HasFocus();
    this->Update([&] {
      if (aspect == Aspect::enabled)
        view.ShowEnabled(control.Enabled());
      else if (aspect == Aspect::visible)
        view.ShowVisible(control.Visible());
      else
        view.Show(aspect);
    });
    const bool mayHide = aspect == Aspect::enabled || aspect == Aspect::visible ||
                         (aspect == Aspect::selection && dynamic_cast<TabControl*>(&control));
    if (hadFocus && mayHide) HandFocusOn();
  }
  void ItemChanged(PropertyGridItem& item) override {
    this->Update([&] { ViewOf(item.Grid()).ShowItem(item); });
  }
  void FormUnloaded() override {
    if (onUnloaded) onUnloaded();
  }

  std::vector<std::pair<FormControl*, std::unique_ptr<View>>> views_;
  std::unordered_map<const FormControl*, View*> byControl_;
  std::unordered_map<Widget, FormControl*> byWidget_;
};

// Updates a drop-down list from its rows, which are only appended, or all removed. `List` is the
// toolkit's: Count, Clear, Add(text), Chosen, Choose(row). `textOf` returns a row's text.
template <class List, class Rows, class Text>
void ShowRows(List list, const Rows& rows, const Text& textOf, int chosen) {
  if (rows.size() < list.Count()) list.Clear();
  for (std::size_t row = list.Count(); row < rows.size(); ++row)
    list.Add(std::invoke(textOf, rows[row]));
  if (list.Chosen() != chosen) list.Choose(chosen);
}

}  // namespace kvo
