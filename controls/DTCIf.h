#pragma once

#include "common/frame/Control.h"

namespace kvo {

// Conditional content: HTML for when a test holds and, optionally, for when it does not.
class DTCIf final : public ControlOf<DTCIf> {
 public:
  Shown<TokenText> DisplayValue{*this};  // the author's description of the condition
  Text Test;
  TokenText OnTrue;
  TokenText OnFalse;
  Reference Office;

  void AppendRuntimeText(std::string& out) const override;

 private:
  // Deliberate: the box and the attribute show the token form of the description.
  static std::string_view Description(const Control& control) {
    return static_cast<const DTCIf&>(control).DisplayValue.Held();
  }
  static std::string_view Caption(const Control& control) {
    return Description(control).empty() ? "<keine Beschreibung>" : Description(control);
  }
  static void EmitDescription(const PropertyRow& row, const Control& control, TagWriter& tag);
  static constexpr Emission kDescriptionLast = {EmitDescription, true};

 public:
  // clang-format off
  static constexpr PropertyRow rows[] = {
      // id property           key              read  write  emitted           stored
      {4,   KVO(DisplayValue), "display-value", "",   "",    kDescriptionLast, kEncoding},
      {5,   KVO(Test),         "test",          "",   "",    kAlways},
      {6,   KVO(OnTrue),       "on-true",       "",   "",    kNever,           kTrimmed},
      {7,   KVO(OnFalse),      "on-false",      "",   "",    kNever,           kTrimmed},
      {8,   KVO(Office)},
  };
  // clang-format on
  static constexpr PropertyInput inputs[] = {
      {"DisplayValue",
       {"Beschreibung", "Description"},
       {"Steht im Kästchen und sagt, worum es geht", "Shown in the box to say what it is for"}},
      {"Test",
       {"Bedingung", "Condition"},
       {"Ein Ausdruck zwischen Prozentzeichen, etwa %#order.total#>50%",
        "An expression between percent signs, such as %#order.total#>50%"}},
      {"OnTrue",
       {"Wenn erfüllt", "If it holds"},
       {"HTML, das bei erfüllter Bedingung erscheint",
        "The HTML that appears when the condition holds"},
       InputKind::html},
      {"OnFalse",
       {"Wenn nicht erfüllt", "If it does not"},
       {"HTML, das sonst erscheint; darf leer bleiben",
        "The HTML that appears otherwise; may be empty"},
       InputKind::html},
  };
  static constexpr std::string_view pages[] = {"propIfGeneral"};
  static constexpr ControlDesign design = {
      .name = "DTCIf",
      .title = {"Wenn/sonst", "If/else"},
      .description = {"Zeigt je nach Bedingung das eine oder das andere",
                      "Shows one thing or another, by a condition"},
      .group = groups::logic,
      .basename = "if",
      .box = SideBySideBox("If", "lblField", "...", Caption),
      .pages = pages,
      .readFailure = ReadFailure::skipsKey,
  };
};

}  // namespace kvo
