// The rows of a data grid, fetched from its recordset in blocks as they are looked at.
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

// Keeps the blocks that were looked at last, and no more: memory does not grow with the table.
class GridRows {
 public:
  struct Row {
    std::vector<std::string> cells;  // as shown, by column
    Variant bookmark;
  };

  GridRows(ObjectRef recordset, std::span<const GridColumn> columns);

  Object& Recordset() const { return *recordset_; }
  // Counted when first asked for: in a large table that takes longer than the first screen.
  std::size_t Count();
  // RuntimeError 9 when there is no such row (any more).
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
  std::list<Block> blocks_;  // the last used first
  std::unordered_map<std::size_t, std::list<Block>::iterator> byNumber_;
};

// The value of a field of the record on which a recordset stands.
Variant FieldValue(Object& recordset, const std::string& field);

}  // namespace kvo
