// A data grid over any number of records, which it fetches from a database on demand.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/forms/FormControl.h"
#include "common/values/Variant.h"

namespace kvo {

class GridRows;

struct GridColumn {
  std::string caption{};
  std::string field{};
  std::string emptyText{};  // for a cell without a value
  std::string groupText{};  // before the value when rows are grouped by this column
  std::string sortHint{};   // the tooltip of the column header
  int size = 0;             // its share of the width
};

class Grid final : public FormControl {
 public:
  struct Design {
    Rect at{};
    Font font{};
    Handler<Grid> onDblClick{};
  };
  Grid(Container& parent, std::string_view name, Design design);
  ~Grid() override;

  const std::vector<GridColumn>& Columns() const { return columns_; }
  void ClearColumns();
  void AddColumn(GridColumn column);

  // The captions for the group of today's dates and before the number of rows.
  std::string todayText;
  std::string recordsText;

  // Sets the connection string and the statement. Rebind fetches and shows the rows through the
  // grid's own recordset (common/values/Recordset.h).
  void DatabaseName(std::string connectionString) { databaseName_ = std::move(connectionString); }
  void RecordSource(std::string statement) { recordSource_ = std::move(statement); }
  const std::string& RecordSource() const { return recordSource_; }
  void Rebind();
  // Removes the rows and releases the database.
  void Unbind();

  // The grid's recordset. Throws RuntimeError 91 before Rebind.
  Object& Recordset() const;
  // The recordset's bookmark for a row.
  Variant RowBookmark(std::size_t row) const;

  std::size_t RowCount() const;
  // The displayed text: the value, or the column's empty text. Fetches the row's block unless it is
  // cached. Passes on the database's exception when that fails.
  const std::string& Cell(std::size_t row, std::size_t column) const;

  // In ascending order.
  const std::vector<std::size_t>& SelectedRows() const { return selectedRows_; }

  bool TakesFocus() const override { return true; }
  ControlKind Kind() override { return this; }

 private:
  friend class FormRenderer;

  std::vector<GridColumn> columns_;
  std::string databaseName_;
  std::string recordSource_;
  std::unique_ptr<GridRows> rows_;
  std::vector<std::size_t> selectedRows_;
  Handler<Grid> onDblClick_;
};

}  // namespace kvo
