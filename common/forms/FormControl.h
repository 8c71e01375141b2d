// Forms: property pages and dialogs, independent of any toolkit. A form holds its controls with
// their captions, positions and events; a renderer (common/forms/FormRenderer.h) turns it into
// native widgets and user actions into events. All measurements are in twips.
//
// Rules for all controls:
// - A control belongs to the form or panel that declares it, for its whole life. The order of
//   declaration is the tab order.
// - Assigning content from code raises the same event as the user's action, but only if the content
//   changes. A renderer is notified of every change.
// - A user's click raises the click event even if it changes nothing.
// - Operations for pages are public; operations for the user are private and used by FormRenderer,
//   a friend.
// - A "&" in a caption is a character, never an access key.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "common/frame/DesignBox.h"

namespace kvo {

class Form;
class FormControl;
class FormRenderer;

// The kinds of controls. A visitor that leaves one out does not compile.
using ControlKind = std::variant<class Label*, class TextBox*, class ComboBox*, class CheckBox*,
                                 class OptionButton*, class CommandButton*, class Frame*,
                                 class PictureBox*, class TabControl*, class TabPanel*,
                                 class PropertyGrid*, class Grid*, class Timer*>;

inline constexpr int kTwipsPerPoint = 20;

struct Font {
  std::string_view family = "Tahoma";
  double points = 8.25;
  FontWeight weight = FontWeight::normal;
};

inline constexpr Font kBoldFont = {.weight = FontWeight::bold};
// The font of markup boxes.
inline constexpr Font kMarkupFont = {.family = "Courier New", .points = 9};

// Desktop colours, by name because the user sets their values.
enum class SystemColor { windowBackground, buttonFace };

// An event's listener, called with the control that raised it. May be empty.
template <class Sender>
using Handler = std::function<void(Sender&)>;

// What changed about a control.
enum class Aspect {
  caption,
  text,       // an edit box's text, and with it the selection
  selection,  // the selected part of an edit box's text, or the selected row, rows or tab
  choices,    // the rows of a list
  checked,
  enabled,
  visible,
  color,
  items,  // rows of a property grid were added or removed
  value,  // the value of a property grid's row
  rows,   // a grid's columns or rows
  timer,  // started, restarted or stopped
};

// A form, a tab control, or the panel of a tab.
class Container {
 public:
  Container() = default;
  Container(const Container&) = delete;
  Container& operator=(const Container&) = delete;

  // In tab order.
  const std::vector<FormControl*>& Controls() const { return controls_; }

  virtual Form& OwnerForm() = 0;
  // This container as a control; nullptr for the form.
  virtual FormControl* AsControl() { return nullptr; }

 protected:
  virtual ~Container() = default;

 private:
  friend class FormControl;
  std::vector<FormControl*> controls_;
};

class FormControl {
 public:
  FormControl(const FormControl&) = delete;
  FormControl& operator=(const FormControl&) = delete;
  virtual ~FormControl();

  std::string_view Name() const { return name_; }
  // Empty for controls without one.
  const std::string& Caption() const { return caption_; }
  // Relative to its container.
  const Rect& At() const { return at_; }
  const Font& TextFont() const { return font_; }
  Container& Parent() const { return parent_; }

  bool Enabled() const { return enabled_; }
  void Enabled(bool bNewEnabled);
  bool Visible() const { return visible_; }
  void Visible(bool bNewVisible);

  // Whether the user can reach it: it and its containers are enabled and visible, on the open tab.
  bool IsReachable() const;
  // Whether this kind of control can take the keyboard focus.
  virtual bool TakesFocus() const { return false; }

  virtual ControlKind Kind() = 0;

 protected:
  FormControl(Container& parent, std::string_view name, const Rect& at, const Font& font,
              std::string_view caption = {});

  void Caption(std::string sNewCaption);
  void Notify(Aspect aspect);
  FormRenderer* OwnerRenderer() const;
  // Whether `child`, a container inside this control, is shown. Of a tab control's panels, only the
  // open one is.
  virtual bool Shows(const FormControl& /*child*/) const { return true; }

 private:
  friend class FormRenderer;
  virtual void RaiseGotFocus() {}

  Container& parent_;
  std::string_view name_;
  std::string caption_;
  Rect at_;
  Font font_;
  bool enabled_ = true;
  bool visible_ = true;
};

// Calls `act` with a pointer to the control's own type.
template <class Act>
auto WithKind(FormControl& control, Act&& act) {
  return std::visit([&](auto* kind) { return act(*kind); }, control.Kind());
}

// Declares a control of a form under its own name: KVO_CONTROL(TextBox, txtValue, .at = {...}).
#define KVO_CONTROL(Type, name, ...) \
  Type name {                        \
    *this, #name, { __VA_ARGS__ }    \
  }
// The same inside a panel or tab control of the form.
#define KVO_CONTROL_IN(container, Type, name, ...) \
  Type name {                                      \
    container, #name, { __VA_ARGS__ }              \
  }

}  // namespace kvo
