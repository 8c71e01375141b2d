// One opened database, for reading only. The one place that knows SOCI.
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

// One value for each column: empty for null; a whole number of 32 bits, a number, or text. A whole
// number beyond 32 bits is text, so that no digit is lost; so is whatever does not fit the type of
// its column.
using Record = std::vector<Variant>;

// What was asked of a database so far.
struct Traffic {
  std::size_t statements = 0;
  std::size_t records = 0;
};

// Failures are RuntimeErrors without passwords: 3000 statement rejected, 3002 file not opened (also
// gone or replaced), 3006 locked, 3706 driver missing, 3709 no connection.
class Database {
 public:
  // Opens it. A file is never created or written to; a server's session is set to reading only,
  // where the server knows such a thing (ODBC has no common way to say so).
  Database(const Address& address, Traffic& traffic);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  // False once the server or the file is gone: open it anew.
  bool IsUsable() const { return usable_; }

  // Checks that the statement can run. Fetches no record (with ODBC at most one).
  std::vector<Column> Describe(const Statement& statement);

  // At most `count` records from the `first`-th on, from 0; fewer only at the end.
  std::vector<Record> Fetch(const Statement& statement, const std::vector<Column>& columns,
                            std::int64_t first, std::int64_t count);

  // How many records there are; nothing when the database cannot tell.
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
