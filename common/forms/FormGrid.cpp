#include "common/forms/FormGrid.h"

#include <array>

#include "common/forms/GridRows.h"
#include "common/frame/Platform.h"
#include "common/values/Recordset.h"
#include "common/values/RuntimeError.h"

namespace kvo {

Grid::Grid(Container& parent, std::string_view name, Design design)
    : FormControl(parent, name, design.at, design.font),
      onDblClick_(std::move(design.onDblClick)) {}

Grid::~Grid() = default;

void Grid::ClearColumns() {
  columns_.clear();
  Unbind();
}

void Grid::AddColumn(GridColumn column) {
  columns_.push_back(std::move(column));
  Unbind();
}

void Grid::Rebind() {
  Unbind();
  ObjectRef recordset = ThePlatform().NewRecordset();
  const std::array<Variant, 5> arguments = {recordSource_, databaseName_, ado::kOpenKeyset,
                                            ado::kLockReadOnly, ado::kOptionsUnspecified};
  recordset->Call("Open", arguments);
  rows_ = std::make_unique<GridRows>(std::move(recordset), columns_);
  Notify(Aspect::rows);
}

void Grid::Unbind() {
  rows_.reset();
  selectedRows_.clear();
  Notify(Aspect::rows);
}

Object& Grid::Recordset() const {
  if (rows_ == nullptr) throw RuntimeError(ErrorNumber::objectNotSet, std::string(Name()));
  return rows_->Recordset();
}

Variant Grid::RowBookmark(std::size_t row) const {
  Recordset();
  return rows_->At(row).bookmark;
}

std::size_t Grid::RowCount() const { return rows_ == nullptr ? 0 : rows_->Count(); }

const std::string& Grid::Cell(std::size_t row, std::size_t column) const {
  Recordset();
  return rows_->At(row).cells.at(column);
}

}  // namespace kvo
