#include "document/shop/Connection.h"

#include "common/values/Ascii.h"
#include "common/values/Recordset.h"
#include "common/values/RuntimeError.h"

namespace kvo::shop {

Variant Connection::Get(std::string_view name) {
  if (EqualIgnoringCase(name, "State")) {
    Opened();
    return ado::kStateOpen;
  }
  if (EqualIgnoringCase(name, "ConnectionString")) return connectionString_;
  return Object::Get(name);
}

Database& Connection::Opened() {
  if (database_ != nullptr && !database_->IsUsable()) database_.reset();
  if (database_ == nullptr)
    database_ = std::make_unique<Database>(ParseAddress(connectionString_), traffic_);
  return *database_;
}

template <class Work>
auto Connection::Use(Work work) {
  const bool fresh = database_ == nullptr;
  Database& database = Opened();
  try {
    return work(database);
  } catch (const RuntimeError&) {
    if (fresh || database.IsUsable()) throw;
  }
  return work(Opened());
}

std::vector<Column> Connection::Describe(const Statement& statement) {
  return Use([&](Database& database) { return database.Describe(statement); });
}

std::vector<Record> Connection::Fetch(const Statement& statement,
                                      const std::vector<Column>& columns, std::int64_t first,
                                      std::int64_t count) {
  return Use([&](Database& database) { return database.Fetch(statement, columns, first, count); });
}

std::optional<std::int64_t> Connection::Count(const Statement& statement) {
  return Use([&](Database& database) { return database.Count(statement); });
}

}  // namespace kvo::shop
