// The properties of controls. Calling one without an argument reads it, with an argument sets it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "common/text/modGlobal.h"
#include "common/values/Variant.h"

namespace kvo {

class Control;

template <class T>
class Property {
 public:
  using Type = T;

  Property() = default;
  explicit Property(T initial) : held_(std::move(initial)) {}

  const T& operator()() const { return held_; }
  void operator()(T newValue) { held_ = std::move(newValue); }

 protected:
  T held_{};
};

using Flag = Property<bool>;
using Integer = Property<std::int32_t>;
using Reference = Property<ObjectRef>;  // counted; nullptr is no object

// A text also gives access to the form in which it is held.
class Text : public Property<std::string> {
 public:
  using Property::Property;
  const std::string& Held() const { return held_; }
  void Hold(std::string text) { held_ = std::move(text); }
};

// HTML written by the author: plain HTML outside, token form inside.
class TokenText {
 public:
  using Type = std::string;

  std::string operator()() const { return DecodeMarkupTokens(held_); }
  void operator()(std::string newText) { held_ = EncodeMarkupTokens(newText); }

  const std::string& Held() const { return held_; }
  void Hold(std::string tokens) { held_ = std::move(tokens); }

 private:
  std::string held_;
};

// A text that stands in the control's box: assigning it refreshes the box.
template <class Kind, class Owner = Control>
class Shown : public Kind {
 public:
  explicit Shown(Owner& control) : control_(control) {}

  using Kind::operator();
  void operator()(std::string newText) {
    Kind::operator()(std::move(newText));
    control_.UpdateDisplay();
  }

 private:
  Owner& control_;
};

}  // namespace kvo
