#include "pages/propGeneralAttributes.h"

#include "common/values/RuntimeError.h"

namespace kvo {
namespace {

constexpr char kBar = '|';  // between an attribute's name and its value

PropertyGridItem::Design AttributeRow(const std::string& name, std::string value) {
  return {.kind = ItemKind::text, .caption = name, .key = name, .value = std::move(value)};
}

}  // namespace

void propGeneralAttributes::SelectionChanged() {
  suiAttributes.Clear();
  PropertyPage::SelectionChanged();
  Changed(true);
}

void propGeneralAttributes::List(Object& attributes) {
  ForEach(attributes, [&](const Variant& element) {
    const std::string item = ToText(element);
    if (item.empty()) return;
    const std::size_t bar = item.find(kBar);
    if (bar == std::string::npos)
      throw RuntimeError(ErrorNumber::subscriptOutOfRange, '"' + item + '"');
    // Text after a second bar is not part of the value.
    const std::size_t end = item.find(kBar, bar + 1);
    suiAttributes.Add(AttributeRow(item.substr(0, bar), item.substr(bar + 1, end - bar - 1)));
  });
}

ObjectRef propGeneralAttributes::Listed() const {
  const auto attributes = std::make_shared<Collection>();
  for (const auto& row : suiAttributes.Items())
    attributes->Add(row->Key() + kBar + ToText(row->Value()));
  return attributes;
}

void propGeneralAttributes::cmdNew_Click() {
  const auto name =
      ThePlatform().InputPrompt("Bitte geben Sie einen Namen ein.", "Attribut hinzufügen...");
  if (name && !name->empty()) suiAttributes.Add(AttributeRow(*name, {}));
}

void propGeneralAttributes::cmdDelete_Click() {
  if (const PropertyGridItem* row = suiAttributes.SelectedItem()) suiAttributes.Remove(*row);
}

}  // namespace kvo
