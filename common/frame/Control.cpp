#include "common/frame/Control.h"

#include <new>

#include "common/frame/TagWriter.h"
#include "common/values/Ascii.h"
#include "common/values/RuntimeError.h"

namespace kvo {

const PropertyRow* ControlClass::FindProperty(std::string_view propertyName) const {
  for (const PropertyRow& row : properties)
    if (EqualIgnoringCase(row.name, propertyName)) return &row;
  return nullptr;
}

const PropertyRow* ControlClass::FindKey(std::string_view key) const {
  for (const PropertyRow& row : bag)
    if (row.key == key) return &row;
  return nullptr;
}

void Control::ReadProperties(PropertyBag& propertyBag) {
  const ControlClass& contract = Class();
  for (const PropertyRow& row : contract.bag) {
    try {
      row.codec.read(row, *this, propertyBag.ReadProperty(row.key, row.readDefault));
    } catch (const std::bad_alloc&) {
      throw;  // the key is fine; skipping it would lose its value at the next save
    } catch (const std::exception& error) {
      propertyBag.KeyFailed(row.key, error);
      if (contract.readFailure == ReadFailure::endsLoad) throw;
      // Skips the key: its property keeps its value.
    }
  }
  Resize();
}

void Control::WriteProperties(PropertyBag& propertyBag) const {
  std::string scratch;
  for (const PropertyRow& row : Class().bag)
    propertyBag.WriteProperty(row.key, row.codec.write(row, *this, scratch), row.writeDefault);
}

std::string Control::GetRuntimeText() const {
  std::string text;
  AppendRuntimeText(text);
  return text;
}

void Control::AppendRuntimeText(std::string& out) const {
  TagWriter tag(out, Namespace(), basename());
  AppendAttributes(tag);
  tag.CloseEmpty();
}

void Control::AppendAttributes(TagWriter& tag) const {
  const PropertyRow* last = nullptr;
  for (const PropertyRow& row : Class().bag) {
    if (row.emission.last)
      last = &row;
    else if (row.emission.append != nullptr)
      row.emission.append(row, *this, tag);
  }
  if (last != nullptr) last->emission.append(*last, *this, tag);
}

Box Control::DesignTimeBox() const {
  const BoxDesign& design = Class().box;
  Box box{design.width, design.height, design.border, {}};
  for (const BoxLabel& label : design.Labels()) {
    const std::string_view caption = captionsShown_ ? label.caption(*this) : label.designCaption;
    Rect at = label.at;
    if (at.width == 0) at.width = ThePlatform().TextWidth(caption, label.weight);
    box.labels.push_back({label.name, std::string(caption), label.weight, at});
  }
  if (laidOut_) design.layOut(box, *this);
  return box;
}

Variant Control::Get(std::string_view name) {
  if (const PropertyRow* row = Class().FindProperty(name)) return row->get(*this);
  return Object::Get(name);
}

void Control::Let(std::string_view name, Variant value) {
  const PropertyRow* row = Class().FindProperty(name);
  if (row == nullptr) return Object::Let(name, std::move(value));
  row->let(*this, std::move(value));
}

Variant Control::Call(std::string_view name, std::span<const Variant> arguments) {
  if (EqualIgnoringCase(name, kRuntimeTextMethod) && arguments.empty()) return GetRuntimeText();
  return Object::Call(name, arguments);
}

std::optional<std::vector<std::string>> Control::PropertyPages() {
  const auto pages = Class().pages;
  return std::vector<std::string>(pages.begin(), pages.end());
}

std::string_view BasenameCaption(const Control& control) {
  return control.DisplayBasename().empty() ? control.basename() : control.DisplayBasename();
}

}  // namespace kvo
