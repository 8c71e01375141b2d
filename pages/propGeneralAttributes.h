#pragma once

#include "common/forms/FormPropertyGrid.h"
#include "common/forms/PageField.h"

namespace kvo {

// The attributes of an element as rows of name and value. Deliberate: the page starts as changed,
// so that applying always writes the list, and later edits do not mark it.
class propGeneralAttributes final : public PropertyPage {
 public:
  propGeneralAttributes() : PropertyPage("Attribute") {}

  KVO_CONTROL(PropertyGrid, suiAttributes, .at = {240, 240, 5280, 3600}, .caption = "Attribute");
  KVO_CONTROL(
      CommandButton, cmdNew, .caption = "Neu...", .at = {240, 3960, 1500, 360},
      .onClick = [this](CommandButton&) { cmdNew_Click(); });
  KVO_CONTROL(
      CommandButton, cmdDelete, .caption = "Löschen", .at = {1860, 3960, 1500, 360},
      .onClick = [this](CommandButton&) { cmdDelete_Click(); });

 private:
  void SelectionChanged() override;
  // RuntimeError 9 for an item without "|"; empty items are skipped.
  void List(Object& attributes);
  ObjectRef Listed() const;
  void cmdNew_Click();
  void cmdDelete_Click();

  const PageField attributes_{*this, Binding("AttributesCollection"),
                              [this](const Variant& attributes) { List(*ToObject(attributes)); },
                              [this] { return Listed(); }};
};

}  // namespace kvo
