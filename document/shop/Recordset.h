// The records of one statement, as controls and pages see them.
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

// Late bound, with the members that common/values/Recordset.h lists. Field names ignore case.
//
// Fetches records in pages as needed; memory use does not grow with their number. Each page shows
// the table at the time of its fetch. A bookmark holds the record's index and contents: it still
// finds a record that has moved a little, and never takes another for it.
//
// Errors: 3704 closed, 3705 already open, 3021 no current record, 3265 no such field, 5 for a lock
// type that allows writing or anything but a single reading statement, and those of the database.
class Recordset final : public Object {
 public:
  Variant Get(std::string_view name) override;
  void Let(std::string_view name, Variant value) override;
  Variant Call(std::string_view name, std::span<const Variant> arguments) override;

  // For the field objects.
  Variant Name(std::size_t column);
  Variant Value(std::size_t column);

  // What it has read from its database.
  const Traffic& Asked();

 private:
  struct Opened;
  Opened& Open();
  void Open(std::span<const Variant> arguments);
  ObjectRef FieldNamed(const std::string& name);
  ObjectRef Fields();
  ObjectRef FieldAt(std::size_t column);
  std::int64_t IndexOf(const std::string& bookmark);
  std::int32_t RecordCount();
  const Record* Current();
  const Record& Required();

  std::string source_;
  std::shared_ptr<Opened> opened_;
};

}  // namespace kvo::shop
