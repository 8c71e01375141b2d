// The connection to the shop database, as controls and pages see it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/values/Object.h"
#include "document/shop/Database.h"

namespace kvo::shop {

// Late bound: State (1, open), ConnectionString (as given, with the password, so that a recordset
// can be opened on it).
//
// Opens the database on first use; reading State is a use. When opening fails, State throws the
// reason; reading it again retries. When the server or the file was lost since, the next use
// reopens it once before failing.
class Connection final : public Object {
 public:
  explicit Connection(std::string connectionString)
      : connectionString_(std::move(connectionString)) {}

  Variant Get(std::string_view name) override;

  // As in Database.
  std::vector<Column> Describe(const Statement& statement);
  std::vector<Record> Fetch(const Statement& statement, const std::vector<Column>& columns,
                            std::int64_t first, std::int64_t count);
  std::optional<std::int64_t> Count(const Statement& statement);

  const Traffic& Asked() const { return traffic_; }

 private:
  Database& Opened();
  template <class Work>
  auto Use(Work work);

  std::string connectionString_;
  Traffic traffic_;
  std::unique_ptr<Database> database_;
};

}  // namespace kvo::shop
