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

// Late bound, with the members that common/values/Recordset.h lists. Field names are matched
// without regard to case.
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

  // For the field objects.
  Variant Value(std::size_t column);

  // How much it asked of its database.
  const Traffic& Asked();

 private:
  struct Opened;
  Opened& Open();
  void Open(std::span<const Variant> arguments);
  ObjectRef FieldNamed(const std::string& name);
  std::int64_t IndexOf(const std::string& bookmark);
  std::int32_t RecordCount();
  const Record* Current();
  const Record& Required();

  std::string source_;
  std::shared_ptr<Opened> opened_;
};

}  // namespace kvo::shop
