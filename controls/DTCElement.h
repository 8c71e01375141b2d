#pragma once

#include "common/frame/Control.h"
#include "controls/AttributeList.h"

namespace kvo {

// Stands for one arbitrary HTML element: whole, or its opening or closing tag only.
class DTCElement final : public ControlOf<DTCElement> {
 public:
  Shown<Text> Value{*this};  // the HTML element's name, such as "td"
  Flag OpeningTagOnly;
  Flag ClosingTagOnly;
  TokenText HTMLContent;
  AttributeList AttributesCollection;
  JoinedAttributes Attributes{AttributesCollection};

  // RuntimeError 9 for an attribute item without "|".
  void AppendRuntimeText(std::string& out) const override;

 private:
  static std::string_view Caption(const Control& control) {
    return static_cast<const DTCElement&>(control).Value();
  }
  static void EmitName(const PropertyRow& row, const Control& control, TagWriter& tag);
  static void EmitOpening(const PropertyRow& row, const Control& control, TagWriter& tag);
  static void EmitClosing(const PropertyRow& row, const Control& control, TagWriter& tag);
  static void EmitAttributes(const PropertyRow& row, const Control& control, TagWriter& tag);

  // Deliberate: a key without a property, dropped on reading and in practice never stored.
  static constexpr KeyCodec kDropped = {
      "-", [](const PropertyRow&, Control&, std::string_view) {},
      [](const PropertyRow&, const Control&, std::string&) { return std::string_view(); }};

 public:
  // clang-format off
  static constexpr PropertyRow rows[] = {
      // id property                   key                 read     write          emitted         stored
      {4,   KVO(Value),                "value",            "",      kAlwaysStored, {EmitName}},
      {0,   {},                        "display-value",    "",      "",            kNever,          kDropped},
      {5,   KVO(OpeningTagOnly),       "opening-tag-only", "false", "false",       {EmitOpening},   kTrueFalse},
      {6,   KVO(ClosingTagOnly),       "closing-tag-only", "false", "false",       {EmitClosing},   kTrueFalse},
      {7,   KVO(HTMLContent),          "html-content",     "",      "",            kNever,          kTrimmed},
      {8,   KVO(Attributes),           "attributes",       "",      "",            {EmitAttributes}},
      {9,   KVO(AttributesCollection)},
  };
  // clang-format on
  static constexpr PropertyInput inputs[] = {
      {"Value",
       {"Element", "Element"},
       {"Der Name des HTML-Elements, etwa td", "The name of the HTML element, such as td"}},
      {"OpeningTagOnly",
       {"Nur öffnendes Tag", "Opening tag only"},
       {"Schreibt weder Inhalt noch schließendes Tag", "Writes neither content nor closing tag"}},
      {"ClosingTagOnly",
       {"Nur schließendes Tag", "Closing tag only"},
       {"Schreibt weder öffnendes Tag noch Inhalt", "Writes neither opening tag nor content"}},
      {"HTMLContent",
       {"Inhalt", "Content"},
       {"Text oder HTML im Element", "Text or HTML inside the element"},
       InputKind::html},
      {"Attributes",
       {"Attribute", "Attributes"},
       {"Name und Wert mit | dazwischen, vor jedem weiteren Attribut ||",
        "Name and value with | between them, before each further attribute ||"}},
  };
  static constexpr std::string_view pages[] = {"propElementProperties", "propGeneralAttributes"};
  static constexpr ControlDesign design = {
      .name = "DTCElement",
      .title = {"HTML-Element", "HTML element"},
      .description = {"Ein Element, dessen Attribute Ausdrücke sein können",
                      "An element whose attributes may be expressions"},
      .group = groups::logic,
      .basename = "print",  // deliberate: not a name of its own
      .tagName = "element",
      .box = SideBySideBox("Element", "lblValue", "<Value>", Caption),
      .pages = pages,
  };
};

}  // namespace kvo
