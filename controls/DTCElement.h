#pragma once

#include <memory>

#include "controls/ContentControl.h"

namespace kvo {

// Stands for one arbitrary HTML element: whole, or its opening or closing tag only.
class DTCElement final : public ContentControl {
 public:
  DTCElement() { AttributesCollection(nullptr); }
  static const ControlClass& Contract();
  const ControlClass& Class() const override { return Contract(); }
  // RuntimeError 9 for an attribute item without "|".
  void AppendRuntimeText(std::string& out) const override;

  // The HTML element's name, such as "td".
  const std::string& Value() const { return value_; }
  void Value(std::string_view sNewValue) {
    value_ = sNewValue;
    UpdateDisplay();
  }
  bool OpeningTagOnly() const { return openingTagOnly_; }
  void OpeningTagOnly(bool bNewOpeningTagOnly) { openingTagOnly_ = bNewOpeningTagOnly; }
  bool ClosingTagOnly() const { return closingTagOnly_; }
  void ClosingTagOnly(bool bNewClosingTagOnly) { closingTagOnly_ = bNewClosingTagOnly; }

  // The attribute list: items "name|value" joined by "||". Empty items at the front get lost.
  std::string Attributes() const;
  void Attributes(std::string_view sNewAttributes);
  // The list itself, a collection of texts: shared with whoever sets it, never null.
  const ObjectRef& AttributesCollection() const { return attributes_; }
  void AttributesCollection(ObjectRef colNewAttributesCollection);

 private:
  template <class Visit>
  void ForEachAttribute(const Visit& visit) const;

  std::string value_;
  std::string displayValue_;  // persisted under a key of its own, but never set by anything
  bool openingTagOnly_ = false;
  bool closingTagOnly_ = false;
  ObjectRef attributes_;
  const Collection* ownList_ = nullptr;  // attributes_, unless it is a host's own collection
};

}  // namespace kvo
