#include "common/forms/PropertyRows.h"

#include <algorithm>

#include "common/forms/FormControls.h"
#include "common/text/modGlobal.h"

namespace kvo {
namespace {

int NumberOf(const PropertyGridItem::Items& items, const PropertyGridItem* item) {
  const auto at = std::find_if(items.begin(), items.end(),
                               [item](const auto& each) { return each.get() == item; });
  return at == items.end() ? kNoRow : static_cast<int>(at - items.begin());
}

}  // namespace

int RowOf(const PropertyGrid& grid, const PropertyGridItem* item) {
  return NumberOf(grid.Items(), item);
}

PropertyGridItem* RowAt(const PropertyGrid& grid, int row) {
  const bool there = row >= 0 && row < static_cast<int>(grid.Items().size());
  return there ? grid.Items()[static_cast<std::size_t>(row)].get() : nullptr;
}

PropertyGridItem* NextRow(const PropertyGrid& grid, int steps) {
  const int last = static_cast<int>(grid.Items().size()) - 1;
  const int now = RowOf(grid, grid.SelectedItem());
  if (last < 0) return nullptr;
  return RowAt(grid, now == kNoRow && steps == -1 ? last : std::clamp(now + steps, 0, last));
}

bool SpansColumns(const PropertyGridItem& item) {
  return item.Kind() == ItemKind::category || item.Kind() == ItemKind::button ||
         item.Kind() == ItemKind::entry;
}

bool IsPlainList(const PropertyGrid& grid) {
  const auto& items = grid.Items();
  return std::all_of(items.begin(), items.end(),
                     [](const auto& item) { return item->Kind() == ItemKind::entry; });
}

bool HasValueBox(const PropertyGridItem& item) {
  return item.Kind() == ItemKind::text || item.Kind() == ItemKind::color ||
         item.Kind() == ItemKind::list;
}

bool HasButton(const PropertyGridItem& item) {
  return item.Kind() == ItemKind::color || item.Kind() == ItemKind::button;
}

int ChosenRow(const PropertyGridItem& item) {
  const PropertyGridItem* chosen = GetSelectedChoice(item);
  return chosen == nullptr ? kNoRow : NumberOf(item.Choices(), chosen);
}

std::optional<Swatch> SwatchOf(const PropertyGridItem& item) {
  Swatch color;
  if (item.Kind() != ItemKind::color ||
      !ParseColor(ToText(item.Value()), color.red, color.green, color.blue))
    return std::nullopt;
  return color;
}

}  // namespace kvo
