// The data grid: the records of a statement, however many, fetched as they are looked at.
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
  std::string emptyText{};  // stands in a cell without a value
  std::string groupText{};  // stands before the value when the rows are grouped by this column
  std::string sortHint{};   // shown over the column's head
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

  // Texts of the grid's own captions: the group of today's dates, and before the number of rows.
  std::string todayText;
  std::string recordsText;

  // The database, as a connection string, and the statement. Rebind fetches and shows the rows,
  // through a recordset of the grid's own (common/values/Recordset.h).
  void DatabaseName(std::string connectionString) { databaseName_ = std::move(connectionString); }
  void RecordSource(std::string statement) { recordSource_ = std::move(statement); }
  const std::string& RecordSource() const { return recordSource_; }
  void Rebind();
  // Shows no rows and lets the database go.
  void Unbind();

  // The recordset of the rows; RuntimeError 91 before Rebind.
  Object& Recordset() const;
  // Where the recordset stands for a row.
  Variant RowBookmark(std::size_t row) const;

  std::size_t RowCount() const;
  // As shown: the value, or the column's empty text. Fetches the row with its neighbours unless
  // they were looked at lately; a failing fetch is the database's exception.
  const std::string& Cell(std::size_t row, std::size_t column) const;

  // In the order of the rows.
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
