// The rows of a property grid as every renderer has them. A page never includes this file.
#pragma once

#include <cstdint>
#include <optional>

#include "common/forms/FormPropertyGrid.h"

namespace kvo {

// The row's number; kNoRow when it is none of the grid's.
int RowOf(const PropertyGrid& grid, const PropertyGridItem* item);
// nullptr when there is no such row.
PropertyGridItem* RowAt(const PropertyGrid& grid, int row);

// The row to which the user goes by so many steps down, or up when negative; not beyond the ends.
// Without a row, one goes to the first, and by one step up to the last. nullptr: there are no rows.
PropertyGridItem* NextRow(const PropertyGrid& grid, int steps);

// Whether the row is one line across the grid, without a value.
bool SpansColumns(const PropertyGridItem& item);
// Whether the rows are a plain list, which needs no second column.
bool IsPlainList(const PropertyGrid& grid);
// Whether the row's value stands in a box of its own while the user is on the row.
bool HasValueBox(const PropertyGridItem& item);
// Whether there is a button: beside that box, or instead of the row.
bool HasButton(const PropertyGridItem& item);

// The number of the choice that the row's value is; kNoRow when it is none.
int ChosenRow(const PropertyGridItem& item);

// The colour that the row's value is; nothing when the row is none for colours, or holds none.
struct Swatch {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
};
std::optional<Swatch> SwatchOf(const PropertyGridItem& item);

}  // namespace kvo
