// Forms: what a property page or dialog is made of, without any toolkit. A form holds its controls
// with their captions, places and events; a renderer (common/forms/FormRenderer.h) turns it into
// native widgets and the user's actions into events. All measures are twips.
//
// The rules that hold for all of them:
// - A control belongs to the form (or panel) in which it is declared, for its whole life. The order
//   of declaration is the tab order.
// - Assigning content from code raises the same event as the user's action does, but only if the
//   content really changed. A renderer is told of every change, whoever made it.
// - A user's click raises the click event, whether or not it changes anything.
// - What a page may do is public. What only the user may do is private, and reached by renderers.
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

// The kinds of controls, so that what leaves one out does not compile.
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
// Boxes for markup are set in this font.
inline constexpr Font kMarkupFont = {.family = "Courier New", .points = 9};

// Colours of the desktop, named because their values are the user's.
enum class SystemColor { windowBackground, buttonFace };

// What an event calls, with the control that raised it. Empty: nobody listens.
template <class Sender>
using Handler = std::function<void(Sender&)>;

// What about a control is new.
enum class Aspect {
  caption,
  text,       // an edit box's text; its selection is new as well
  selection,  // what is selected: of an edit box's text, or which row, rows or tab
  choices,    // the rows of a list
  checked,
  enabled,
  visible,
  color,
  items,  // rows of a property grid were added or removed
  value,  // the value of a property grid's row
  rows,   // a grid's columns or rows
  timer,  // running or not, or started anew
};

// What holds controls: a form, or the panel of a tab.
class Container {
 public:
  Container() = default;
  Container(const Container&) = delete;
  Container& operator=(const Container&) = delete;

  // In tab order.
  const std::vector<FormControl*>& Controls() const { return controls_; }

  virtual Form& OwnerForm() = 0;
  // The control that this container is, or nullptr when it is the form itself.
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
  // Empty for what has none.
  const std::string& Caption() const { return caption_; }
  // Relative to its container.
  const Rect& At() const { return at_; }
  const Font& TextFont() const { return font_; }
  Container& Parent() const { return parent_; }

  bool Enabled() const { return enabled_; }
  void Enabled(bool bNewEnabled);
  bool Visible() const { return visible_; }
  void Visible(bool bNewVisible);

  // Whether the user can get at it: it and all around it enabled and visible, on the open tab.
  bool IsReachable() const;
  // Whether it can take the keyboard focus at all.
  virtual bool TakesFocus() const { return false; }

  virtual ControlKind Kind() = 0;

 protected:
  FormControl(Container& parent, std::string_view name, const Rect& at, const Font& font,
              std::string_view caption = {});

  void Caption(std::string sNewCaption);
  void Notify(Aspect aspect);
  FormRenderer* OwnerRenderer() const;
  // Whether the container `child`, a part of this control, is the one that shows.
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

// Calls `act` with the control as the kind that it is.
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
