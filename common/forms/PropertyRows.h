// Helpers for property grid rows that all renderers share. Pages never include this file.
#pragma once

#include <cstdint>
#include <optional>

#include "common/forms/FormPropertyGrid.h"

namespace kvo {

// The row's index; kNoRow when it is not in the grid.
int RowOf(const PropertyGrid& grid, const PropertyGridItem* item);
// nullptr when there is no such row.
PropertyGridItem* RowAt(const PropertyGrid& grid, int row);

// The row `steps` rows further down (up when negative), limited to the grid. Without a selected
// row, one step up leads to the last row, anything else to the first. nullptr when there are no
// rows.
PropertyGridItem* NextRow(const PropertyGrid& grid, int steps);

// Whether the row spans the grid, without a value.
bool SpansColumns(const PropertyGridItem& item);
// Whether the rows are a plain list, without a second column.
bool IsPlainList(const PropertyGrid& grid);
// Whether the row's value has a box of its own while the row is selected.
bool HasValueBox(const PropertyGridItem& item);
// Whether the row has a button: beside that box, or in place of the row.
bool HasButton(const PropertyGridItem& item);

// The index of the choice that equals the row's value; kNoRow when none does.
int ChosenRow(const PropertyGridItem& item);

// A colour row's value; nothing when the row is of another kind or holds no colour.
struct Swatch {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
};
std::optional<Swatch> SwatchOf(const PropertyGridItem& item);

}  // namespace kvo
