// A field of a property page: a control and the property that it shows. Declared in one row,
// KVO_FIELD(TextBox, txtHref, "Href", .at = {...}), it is read and written with the page and marks
// the page changed when the user edits it.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "common/forms/FormControls.h"
#include "common/forms/PropertyPage.h"

namespace kvo {

class PageField;

// A field's property, with conversions where the two represent the value differently.
struct Binding {
  using Conversion = std::function<std::string(std::string)>;

  explicit Binding(std::string_view name) : property(name) {}

  // Converts the property's text for the field, and the field's text for the property.
  Binding& Shown(Conversion made) { return shown = std::move(made), *this; }
  Binding& Stored(Conversion made) { return stored = std::move(made), *this; }

  // Fields are read and written in the order of their declaration, which is the tab order. These
  // move one before a field that was declared earlier.
  Binding& Before(const PageField& field) { return ReadBefore(field).WrittenBefore(field); }
  Binding& ReadBefore(const PageField& field) { return readBefore = &field, *this; }
  Binding& WrittenBefore(const PageField& field) { return writtenBefore = &field, *this; }

  std::string_view property;
  Conversion shown;
  Conversion stored;
  const PageField* readBefore = nullptr;
  const PageField* writtenBefore = nullptr;
};

// Any part of a page that shows a property; a member of its page.
class PageField {
 public:
  // `show` puts the property's value into the page; `held` returns the page's value.
  PageField(PropertyPage& page, Binding binding, std::function<void(Variant&&)> show,
            std::function<Variant()> held);
  PageField(const PageField&) = delete;
  PageField& operator=(const PageField&) = delete;

  const Binding& Bound() const { return binding_; }
  // The property's value, and the field's value.
  Variant Get() const;
  Variant Held() const { return held_(); }
  // Fills the field from the property, and writes it back.
  void Read() const;
  void Write() const;

 protected:
  // Adds the field's listeners to the control's design, for each event without one.
  template <class Design>
  static Design Listening(const PropertyPage& page, Design design) {
    const auto set = [](auto& event, const auto& listener) {
      if (!event) event = listener;
    };
    if constexpr (requires { design.onChange; })
      set(design.onChange, page.marksChanged);
    else
      set(design.onClick, page.marksChanged);
    if constexpr (requires { design.onGotFocus; }) set(design.onGotFocus, SelectAllText);
    return design;
  }

  // Puts a value into a control, and returns the control's value. A text box holds a text, a list
  // the key of its row or, without one, its text, a check box or option button a flag.
  static void Put(EditBox& box, Variant&& value);
  static void Put(ComboBox& list, Variant&& value);
  static Variant Taken(const EditBox& box);
  static Variant Taken(const ComboBox& list);
  template <class Mark>
  requires requires(Mark& mark) { mark.Value(true); }
  static void Put(Mark& mark, Variant&& value) { mark.Value(ToFlag(value)); }
  template <class Mark>
  requires requires(const Mark& mark) { mark.Value(); }
  static Variant Taken(const Mark& mark) { return mark.Value(); }

 private:
  PropertyPage& page_;
  Binding binding_;
  std::function<void(Variant&&)> show_;
  std::function<Variant()> held_;
};

template <class Control>
class Field final : public Control, public PageField {
 public:
  Field(Container& parent, std::string_view name, Binding binding, typename Control::Design design)
      : Control(parent, name, Listening(PageOf(parent), std::move(design))),
        PageField(
            PageOf(parent), std::move(binding),
            [this](Variant&& value) { Put(*this, std::move(value)); },
            [this] { return Taken(*this); }) {}

 private:
  static PropertyPage& PageOf(Container& container) {
    return static_cast<PropertyPage&>(container.OwnerForm());
  }
};

// An event listener that does nothing, in place of the field's own.
inline constexpr auto kNothing = [](auto&) {};

// Declares a field of a page: KVO_FIELD(CheckBox, chkDisplayPrice, "DisplayPrice", .at = {...}), or
// with Binding("Test").Shown(...) in place of the property's name.
#define KVO_FIELD(Type, name, property, ...) KVO_FIELD_IN(*this, Type, name, property, __VA_ARGS__)
// The same, inside a panel of the page.
#define KVO_FIELD_IN(container, Type, name, property, ...)      \
  ::kvo::Field<Type> name {                                     \
    container, #name, ::kvo::Binding(property), { __VA_ARGS__ } \
  }

}  // namespace kvo
