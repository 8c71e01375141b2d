// The records of one statement, as controls and pages get to see them.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/values/Object.h"
#include "document/shop/Connection.h"
#include "document/shop/RecordCache.h"

namespace kvo::shop {

// Late bound, as common/values/Recordset.h lists it, and besides: State, ActiveConnection, BOF,
// MoveFirst, MovePrevious, MoveLast, Move(n) from where it stands, Move(n, 2) from the last record,
// Move(n, bookmark), Close, and Fields as a collection (Count, items by name or by number from 0).
// Field names are matched without regard to case.
//
// Records are fetched as they are looked at, in pages; memory does not grow with their number. Each
// page shows the table as it is by then. A bookmark knows the record's place and contents: when the
// record has moved a little, it is found again, and another one is never taken for it.
//
// Errors: 3704 closed, 3705 open already, 3021 no record here, 3265 no such field, 5 a lock type
// that would write or a statement that is not one reading statement, and those of the database.
class Recordset final : public Object {
 public:
  Variant Get(std::string_view name) override;
  void Let(std::string_view name, Variant value) override;
  Variant Call(std::string_view name, std::span<const Variant> arguments) override;
  Variant Item(const Variant& key) override;  // a field

  // For the field objects.
  const std::vector<Column>& Columns() const;
  Variant Value(std::size_t column);

  // How much it asked of its database; nothing while it is closed.
  const Traffic& Asked() const;

 private:
  struct Opened;
  Opened& Open();
  const Opened& Open() const;
  void Open(std::span<const Variant> arguments);
  void Move(std::span<const Variant> arguments);
  void MoveTo(std::int64_t index);
  std::int64_t Standing();
  void GoTo(const Variant& bookmark);
  std::int64_t IndexOf(const std::string& bookmark);
  std::int64_t RecordCount();
  std::int64_t Last();
  const Record* Current();
  const Record& Required();
  Variant Fields();

  std::string source_;
  std::shared_ptr<Opened> opened_;
};

}  // namespace kvo::shop
