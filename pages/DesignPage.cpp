#include "pages/DesignPage.h"

#include <algorithm>

#include "common/text/modGlobal.h"

namespace kvo {

void DesignPage::Declare(std::span<const Row> rows) {
  rows_ = rows;
  for (int order = 1;; ++order) {
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [order](const Row& each) { return each.order == order; });
    if (row == rows.end()) return;
    fields_.emplace_back(
        *this, Binding(row->property),
        [this, row](Variant&& value) { Fill(*row, ToText(std::move(value))); },
        [this, row] { return ValueOf(*row); });
  }
}

void DesignPage::Initialize() {
  for (const Row& row : rows_) {
    PropertyGridItem& item = suiDesign.Add(
        {.kind = row.kind, .caption = std::string(row.caption), .key = std::string(row.key)});
    if (row.choices == nullptr) continue;
    for (Choice& choice : row.choices())
      item.AddChoice(std::move(choice.caption.german), std::move(choice.value));
  }
}

void DesignPage::Fill(const Row& row, const std::string& value) {
  PropertyGridItem& item = suiDesign.Item(row.key);
  // Deliberate: when its choices lack the new control's value, a pixel row keeps the former
  // control's and writes that on apply.
  if (row.way == Way::choiceOnly && FindChoiceByValue(item, value) == nullptr) return;
  item.Value(value);
}

Variant DesignPage::ValueOf(const Row& row) {
  const PropertyGridItem& item = suiDesign.Item(row.key);
  const PropertyGridItem* choice = row.way == Way::asItStands ? nullptr : GetSelectedChoice(item);
  return choice == nullptr ? item.Value() : choice->Value();
}

void DesignPage::PickColor(PropertyGridItem& row) {
  const std::string current = ToText(row.Value());
  if (!current.empty()) {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    ParseColor(current, red, green, blue);  // white for any other text
    comDlgColor = red + green * 0x100 + blue * 0x10000;
  }
  comDlgColor = ThePlatform().ChooseColor(comDlgColor);
  row.Value('#' + ColorToHex(comDlgColor));
}

}  // namespace kvo
