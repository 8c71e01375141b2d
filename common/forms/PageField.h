// A field of a property page: a control and the property that it shows. Declared in one row,
// KVO_FIELD(TextBox, txtHref, "Href", .at = {...}), it is filled when the page is, written when the
// page is applied, and marks the page changed when it is edited.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "common/forms/FormControls.h"
#include "common/forms/PropertyPage.h"

namespace kvo {

class PageField;

// The property of a field, and how the two exchange the value where that is not as it stands.
struct Binding {
  using Conversion = std::function<std::string(std::string)>;

  explicit Binding(std::string_view name) : property(name) {}

  // What the field shows for a text of the property, and what the property gets for one of the
  // field.
  Binding& Shown(Conversion made) { return shown = std::move(made), *this; }
  Binding& Stored(Conversion made) { return stored = std::move(made), *this; }

  // Fields are read and written in the order of their declaration, which is the tab order. These
  // put one in front of a field that stands before it.
  Binding& Before(const PageField& field) { return ReadBefore(field).WrittenBefore(field); }
  Binding& ReadBefore(const PageField& field) { return readBefore = &field, *this; }
  Binding& WrittenBefore(const PageField& field) { return writtenBefore = &field, *this; }

  std::string_view property;
  Conversion shown;
  Conversion stored;
  const PageField* readBefore = nullptr;
  const PageField* writtenBefore = nullptr;
};

// Any part of a page that shows a property. A member of its page.
class PageField {
 public:
  // `show` puts the property's value into the page, `held` is what the page then holds.
  PageField(PropertyPage& page, Binding binding, std::function<void(Variant&&)> show,
            std::function<Variant()> held);
  PageField(const PageField&) = delete;
  PageField& operator=(const PageField&) = delete;

  const Binding& Bound() const { return binding_; }
  // What the property holds, and what the field does.
  Variant Get() const;
  Variant Held() const { return held_(); }
  // Fills the field from the property, and writes it back.
  void Read() const;
  void Write() const;

 protected:
  // The control's design with what a field does on its events, unless that names another listener.
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

  // Puts a value into a control, and takes it out again: a text box holds a text, a list the key of
  // its row or, without one, its text, a check box or option a flag.
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

// Listens in a field's row to an event on which the field is to do nothing.
inline constexpr auto kNothing = [](auto&) {};

// Declares a field of a page: KVO_FIELD(CheckBox, chkDisplayPrice, "DisplayPrice", .at = {...}), or
// with Binding("Test").Shown(...) in place of the property's name.
#define KVO_FIELD(Type, name, property, ...) KVO_FIELD_IN(*this, Type, name, property, __VA_ARGS__)
// The same inside a panel of the page.
#define KVO_FIELD_IN(container, Type, name, property, ...)      \
  ::kvo::Field<Type> name {                                     \
    container, #name, ::kvo::Binding(property), { __VA_ARGS__ } \
  }

}  // namespace kvo
