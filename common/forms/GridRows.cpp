#include "common/forms/GridRows.h"

#include <array>

#include "common/values/Recordset.h"
#include "common/values/RuntimeError.h"

namespace kvo {
namespace {

constexpr std::size_t kRowsPerBlock = 128;
constexpr std::size_t kBlocks = 64;

void MoveTo(Object& recordset, std::size_t row) {
  const std::array<Variant, 2> arguments = {static_cast<std::int32_t>(row), ado::kBookmarkFirst};
  recordset.Call("Move", arguments);
}

bool AtEnd(Object& recordset) { return ToFlag(recordset.Get("EOF")); }

std::size_t CountRecords(Object& recordset) {
  const std::int32_t known = ToInteger(recordset.Get("RecordCount"));
  if (known >= 0) return static_cast<std::size_t>(known);
  // The recordset does not know its size; finds the end by bisection.
  if (AtEnd(recordset)) return 0;
  std::size_t inside = 0;
  std::size_t beyond = 1;
  const auto exists = [&](std::size_t row) {
    MoveTo(recordset, row);
    return !AtEnd(recordset);
  };
  while (exists(beyond)) {
    inside = beyond;
    beyond *= 2;
  }
  while (beyond - inside > 1) {
    const std::size_t middle = inside + (beyond - inside) / 2;
    (exists(middle) ? inside : beyond) = middle;
  }
  return beyond;
}

}  // namespace

Variant FieldValue(Object& recordset, const std::string& field) {
  const Variant name = field;
  return ToObject(recordset.Call("Fields", {&name, 1}))->Get("Value");
}

GridRows::GridRows(ObjectRef recordset, std::span<const GridColumn> columns)
    : recordset_(std::move(recordset)), columns_(columns) {}

std::size_t GridRows::Count() {
  if (!count_) count_ = CountRecords(*recordset_);
  return *count_;
}

const GridRows::Row& GridRows::At(std::size_t row) {
  const std::size_t number = row / kRowsPerBlock;
  if (const auto known = byNumber_.find(number); known != byNumber_.end()) {
    blocks_.splice(blocks_.begin(), blocks_, known->second);
  } else {
    blocks_.push_front(Fetch(number));
    byNumber_[number] = blocks_.begin();
    if (blocks_.size() > kBlocks) {
      byNumber_.erase(blocks_.back().number);
      blocks_.pop_back();
    }
  }
  const auto& rows = blocks_.front().rows;
  if (row % kRowsPerBlock >= rows.size()) throw RuntimeError(ErrorNumber::subscriptOutOfRange);
  return rows[row % kRowsPerBlock];
}

GridRows::Block GridRows::Fetch(std::size_t number) {
  Block block{number, {}};
  MoveTo(*recordset_, number * kRowsPerBlock);
  for (; block.rows.size() < kRowsPerBlock && !AtEnd(*recordset_);
       recordset_->Call("MoveNext", {})) {
    Row row;
    row.bookmark = recordset_->Get("Bookmark");
    for (const GridColumn& column : columns_) {
      row.cells.push_back(ToText(FieldValue(*recordset_, column.field)));
      if (row.cells.back().empty()) row.cells.back() = column.emptyText;
    }
    block.rows.push_back(std::move(row));
  }
  return block;
}

}  // namespace kvo
