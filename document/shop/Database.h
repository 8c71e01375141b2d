// An open database, read-only. The only part that knows SOCI.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/values/Variant.h"
#include "document/shop/Address.h"
#include "document/shop/Statement.h"

namespace kvo::shop {

struct Column {
  enum class Type { integer, number, text };
  std::string name;
  Type type = Type::text;
};

// One value for each column: empty for null, a 32-bit integer, a number, or text. Larger integers
// are text, so that no digit is lost, as is any value that does not fit its column's type.
using Record = std::vector<Variant>;

// Counts the statements run and records read so far.
struct Traffic {
  std::size_t statements = 0;
  std::size_t records = 0;
};

// Failures are RuntimeErrors without passwords: 3000 statement rejected, 3002 file not opened (or
// removed or replaced), 3006 locked, 3706 driver missing, 3709 no connection.
class Database {
 public:
  // Opens the database. Never creates or writes a file; makes a server session read-only where
  // possible (ODBC has no common way).
  Database(const Address& address, Traffic& traffic);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  // False once the server or the file is gone; open a new Database then.
  bool IsUsable() const { return usable_; }

  // Checks that the statement can run and returns its columns. Fetches no record (with ODBC at most
  // one).
  std::vector<Column> Describe(const Statement& statement);

  // Returns `count` records from index `first`; fewer only at the end.
  std::vector<Record> Fetch(const Statement& statement, const std::vector<Column>& columns,
                            std::int64_t first, std::int64_t count);

  // Returns the number of records; nothing when the database cannot count them.
  std::optional<std::int64_t> Count(const Statement& statement);

 private:
  struct Session;  // SOCI's
  template <class Work>
  auto Try(Work work);
  [[noreturn]] void Fail(const std::exception& error, bool opening);
  void CheckFile();
  void Prepare();
  void FindPaging(const Statement& statement, const std::vector<Column>& columns);
  std::string PageStatement(const Statement& statement, const std::vector<Column>& columns,
                            std::int64_t first, std::int64_t count) const;
  std::vector<Record> FetchForward(const Statement& statement, const std::vector<Column>& columns,
                                   std::int64_t first, std::int64_t count);

  Address address_;
  Traffic& traffic_;
  std::unique_ptr<Session> session_;
  std::optional<Paging> paging_;
  bool usable_ = true;
};

}  // namespace kvo::shop
