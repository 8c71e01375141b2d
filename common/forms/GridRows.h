// The rows of a data grid, fetched from its recordset in blocks on demand.
#pragma once

#include <cstddef>
#include <list>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "common/forms/FormGrid.h"
#include "common/values/Object.h"

namespace kvo {

// Caches the most recently used blocks, so that memory does not grow with the table.
class GridRows {
 public:
  struct Row {
    std::vector<std::string> cells;  // as shown, by column
    Variant bookmark;
  };

  GridRows(ObjectRef recordset, std::span<const GridColumn> columns);

  Object& Recordset() const { return *recordset_; }
  // Counts on the first call: in a large table, this takes longer than fetching the first screen.
  std::size_t Count();
  // Throws RuntimeError 9 when there is no such row, or no longer.
  const Row& At(std::size_t row);

 private:
  struct Block {
    std::size_t number;
    std::vector<Row> rows;
  };
  Block Fetch(std::size_t number);

  ObjectRef recordset_;
  std::span<const GridColumn> columns_;
  std::optional<std::size_t> count_;
  std::list<Block> blocks_;  // most recently used first
  std::unordered_map<std::size_t, std::list<Block>::iterator> byNumber_;
};

// The value of a field in the recordset's current record.
Variant FieldValue(Object& recordset, const std::string& field);

}  // namespace kvo
