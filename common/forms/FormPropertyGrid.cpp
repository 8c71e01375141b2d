#include "common/forms/FormPropertyGrid.h"

#include <algorithm>
#include <utility>

#include "common/forms/Form.h"
#include "common/forms/FormRenderer.h"
#include "common/values/RuntimeError.h"

namespace kvo {

void PropertyGridItem::Value(Variant newValue) {
  if (design_.value == newValue) return;
  design_.value = std::move(newValue);
  Changed();
}

void PropertyGridItem::Append(std::string_view typed) {
  if (typed.empty()) return;
  auto* text = design_.value.If<std::string>();
  if (text == nullptr) return Value(ToText(design_.value) + std::string(typed));
  text->append(typed);
  Changed();
}

void PropertyGridItem::Changed() {
  grid_.ItemChanged(*this);
  if (grid_.onChange_) grid_.onChange_(*this);
}

void PropertyGridItem::Enabled(bool bNewEnabled) {
  if (design_.enabled == bNewEnabled) return;
  design_.enabled = bNewEnabled;
  grid_.ItemChanged(*this);
}

void PropertyGridItem::AddChoice(std::string caption, Variant value, std::string key) {
  choices_.push_back(std::make_unique<PropertyGridItem>(grid_, Design{.kind = ItemKind::choice,
                                                                      .caption = std::move(caption),
                                                                      .key = std::move(key),
                                                                      .value = std::move(value)}));
  grid_.ItemChanged(*this);
}

PropertyGrid::PropertyGrid(Container& parent, std::string_view name, Design design)
    : FormControl(parent, name, design.at, design.font, design.caption),
      onChange_(std::move(design.onChange)),
      onButtonClick_(std::move(design.onButtonClick)),
      onDeleteKey_(std::move(design.onDeleteKey)) {}

PropertyGridItem& PropertyGrid::Add(PropertyGridItem::Design design) {
  items_.push_back(std::make_unique<PropertyGridItem>(*this, std::move(design)));
  PropertyGridItem& added = *items_.back();
  Notify(Aspect::items);
  return added;
}

void PropertyGrid::Remove(const PropertyGridItem& item) {
  const auto at = std::find_if(items_.begin(), items_.end(),
                               [&](const auto& each) { return each.get() == &item; });
  if (at == items_.end()) throw RuntimeError(ErrorNumber::invalidCall, std::string(Name()));
  if (selected_ == at->get()) selected_ = nullptr;
  const auto removed = std::move(*at);  // keeps it alive while the renderer is notified
  items_.erase(at);
  Notify(Aspect::items);
}

void PropertyGrid::Clear() {
  if (items_.empty()) return;
  selected_ = nullptr;
  const auto removed = std::exchange(items_, {});
  Notify(Aspect::items);
}

PropertyGridItem* PropertyGrid::Find(std::string_view key) const {
  for (const auto& item : items_)
    if (item->Key() == key) return item.get();
  return nullptr;
}

PropertyGridItem& PropertyGrid::Item(std::string_view key) {
  if (PropertyGridItem* item = Find(key)) return *item;
  throw RuntimeError(ErrorNumber::invalidCall, std::string(Name()) + '(' + std::string(key) + ')');
}

void PropertyGrid::ItemChanged(PropertyGridItem& item) {
  if (FormRenderer* renderer = OwnerRenderer()) renderer->ItemChanged(item);
}

const PropertyGridItem* GetSelectedChoice(const PropertyGridItem& item) {
  const std::string value = ToText(item.Value());
  for (const auto& choice : item.Choices())
    if (choice->Caption() == value) return choice.get();
  return nullptr;
}

const PropertyGridItem* FindChoiceByValue(const PropertyGridItem& item, std::string_view value) {
  for (const auto& choice : item.Choices())
    if (ToText(choice->Value()) == value) return choice.get();
  return nullptr;
}

}  // namespace kvo
