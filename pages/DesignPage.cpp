#include "pages/DesignPage.h"

namespace kvo {

void DesignPage::Initialize() {
  for (const Row& row : rows_) {
    PropertyGridItem& item = suiDesign.Add(
        {.kind = row.kind, .caption = std::string(row.caption), .key = std::string(row.key)});
    if (row.choices == nullptr) continue;
    for (Choice& choice : row.choices())
      item.AddChoice(std::move(choice.caption), std::move(choice.value));
  }
}

void DesignPage::SelectionChanged() {
  for (const Transfer& transfer : transfers_) {
    PropertyGridItem& row = suiDesign.Item(transfer.key);
    const std::string value = Read(transfer.property);
    // A pixel row keeps the former control's value when its choices lack this one, and writes it
    // over the new control's on apply: deliberate.
    if (transfer.way == Way::choiceOnly && FindChoiceByValue(row, value) == nullptr) continue;
    row.Value(value);
  }
}

void DesignPage::ApplyChanges() {
  for (const Transfer& transfer : transfers_) {
    const PropertyGridItem& row = suiDesign.Item(transfer.key);
    const PropertyGridItem* choice =
        transfer.way == Way::asItStands ? nullptr : GetSelectedChoice(row);
    Write(transfer.property, choice == nullptr ? row.Value() : choice->Value());
  }
}

void DesignPage::PickColor(PropertyGridItem& row) {
  row.Value(comDlgColor.Choose(ToText(row.Value())));
}

}  // namespace kvo
