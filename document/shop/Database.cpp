#include "document/shop/Database.h"

#include <soci/soci.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <string_view>
#include <type_traits>
#include <utility>

#include "common/values/RuntimeError.h"

namespace kvo::shop {
namespace {

// Runs a statement and returns its records one by one, every value as text.
class Reader {
 public:
  Reader(soci::session& session, const std::string& statement, std::size_t columns)
      : values_(columns), indicators_(columns), statement_(session) {
    for (std::size_t i = 0; i < columns; ++i)
      statement_.exchange(soci::into(values_[i], indicators_[i]));
    statement_.alloc();
    // A one-time query needs one round trip to the server; a prepared one would need three.
    statement_.prepare(statement, soci::details::st_one_time_query);
    statement_.define_and_bind();
    statement_.execute();
  }

  // False at the end.
  bool Next() { return statement_.fetch(); }

  bool IsNull(std::size_t column) const { return indicators_[column] == soci::i_null; }
  const std::string& Value(std::size_t column) const { return values_[column]; }

 private:
  std::vector<std::string> values_;
  std::vector<soci::indicator> indicators_;
  soci::statement statement_;  // last, so destroyed first: it writes to the others
};

template <class Number>
std::optional<Number> Parsed(std::string_view text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

bool IsWhole(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

Variant ValueOf(const std::string& text, Column::Type type) {
  if (type == Column::Type::text) return text;
  if (type == Column::Type::integer || IsWhole(text)) {
    const auto integer = Parsed<std::int32_t>(text);
    return integer ? Variant(*integer) : Variant(text);
  }
  const auto number = Parsed<double>(text);
  return number ? Variant(*number) : Variant(text);
}

Column::Type TypeOf(soci::data_type type) {
  switch (type) {
    case soci::dt_integer:
    case soci::dt_long_long:
    case soci::dt_unsigned_long_long:
      return Column::Type::integer;
    case soci::dt_double:
      return Column::Type::number;
    default:
      return Column::Type::text;
  }
}

std::vector<Column> ColumnsOf(soci::session& session, const std::string& statement) {
  const std::unique_ptr<soci::details::statement_backend> described(
      session.make_statement_backend());
  described->alloc();
  const auto cleanUp = [](soci::details::statement_backend* backend) { backend->clean_up(); };
  const std::unique_ptr<soci::details::statement_backend, decltype(cleanUp)> guard(described.get(),
                                                                                   cleanUp);
  described->prepare(statement, soci::details::st_one_time_query);
  std::vector<Column> columns;
  const int count = described->prepare_for_describe();
  for (int i = 1; i <= count; ++i) {
    soci::data_type type = soci::dt_string;
    Column column;
    described->describe_column(i, type, column.name);
    column.type = TypeOf(type);
    columns.push_back(std::move(column));
  }
  return columns;
}

// Removes SOCI's function name from a message: "class::function: message".
std::string_view WithoutFunction(std::string_view message) {
  const std::size_t colon = message.find(": ");
  const std::size_t scope = message.find("::");
  if (colon == std::string_view::npos || scope > colon ||
      message.substr(0, colon).find(' ') != std::string_view::npos)
    return message;
  return message.substr(colon + 2);
}

// Derives the error from SQLite's message, since only the separately loaded driver knows the error
// code. Compares the end only: SOCI prefixes some messages.
ErrorNumber SqliteNumber(std::string_view message, bool opening) {
  constexpr std::array<std::string_view, 2> kLocked = {"database is locked",
                                                       "database table is locked"};
  constexpr std::array<std::string_view, 5> kNotReadable = {
      "unable to open database file", "database disk image is malformed", "file is not a database",
      "disk I/O error", "access permission denied"};
  const auto ends = [&](std::string_view end) { return message.ends_with(end); };
  if (std::ranges::any_of(kLocked, ends)) return ErrorNumber::databaseLocked;
  return opening || std::ranges::any_of(kNotReadable, ends) ? ErrorNumber::fileNotOpened
                                                            : ErrorNumber::statementRejected;
}

}  // namespace

struct Database::Session {
  soci::session soci;

  // What must run together with a page's query.
  std::string beforePage{};

  // For a database without paging: the current read.
  std::unique_ptr<Reader> forward{};
  std::string forwardStatement{};
  std::int64_t forwardAt = 0;

  // For a file: its identity when it was opened.
  dev_t device = 0;
  ino_t file = 0;
};

Database::Database(const Address& address, Traffic& traffic)
    : address_(address), traffic_(traffic), session_(std::make_unique<Session>()) {
  // SOCI would also look for drivers in the current folder, where anyone may have put one.
  [[maybe_unused]] static const auto left = std::erase(soci::dynamic_backends::search_paths(), ".");
  try {
    session_->soci.open(address_.driver, address_.details);
    Prepare();
  } catch (const std::exception& error) {
    Fail(error, true);
  }
}

Database::~Database() = default;

void Database::Prepare() {
  soci::session& session = session_->soci;
  switch (address_.kind) {
    case Kind::sqlite3: {
      paging_ = Paging::limit;
      struct stat status {};
      if (stat(address_.path.c_str(), &status) == 0) {
        session_->device = status.st_dev;
        session_->file = status.st_ino;
      }
      // Keeps the cache small: pages passed on the way to a record are not needed again.
      session << "PRAGMA cache_size = -256";  // in KiB
      // Opening does not read the file yet; this query does.
      Reader(session, "PRAGMA schema_version", 1).Next();
      break;
    }
    case Kind::postgresql:
      paging_ = Paging::limit;
      Reader(session,
             "SELECT set_config('default_transaction_read_only', 'on', false), "
             "set_config('client_encoding', 'UTF8', false)",
             2)
          .Next();
      // Without an ORDER BY, records come in table order. Each scan must begin at the table's start
      // and run in one process, so that pages fit together. Counting may run in parallel.
      try {
        Reader(session, "SELECT set_config('synchronize_seqscans', 'off', false)", 1).Next();
        session_->beforePage = "SET LOCAL max_parallel_workers_per_gather = 0;\n";
      } catch (const soci::soci_error&) {
        // Other servers that speak the protocol may not know this setting.
      }
      break;
    case Kind::mysql:
      paging_ = Paging::limit;
      session << "SET SESSION TRANSACTION READ ONLY";
      break;
    case Kind::odbc:
      break;  // the first statement shows which system it is
  }
}

void Database::Fail(const std::exception& error, bool opening) {
  std::string message = error.what();
  ErrorNumber number = opening ? ErrorNumber::noConnection : ErrorNumber::statementRejected;
  if (const auto* soci = dynamic_cast<const soci::soci_error*>(&error))
    message = soci->get_error_message();
  if (message.starts_with("Failed to find shared library"))
    throw RuntimeError(ErrorNumber::driverNotFound, address_.shown.text + ": " + address_.package);
  if (address_.kind == Kind::sqlite3) {
    number = SqliteNumber(message, opening);
  } else if (!opening) {
    bool connected = false;
    try {
      connected = session_->soci.is_connected();
    } catch (const std::exception&) {
      connected = false;
    }
    if (!connected) number = ErrorNumber::noConnection;
  }
  if (number == ErrorNumber::noConnection || number == ErrorNumber::fileNotOpened) usable_ = false;
  const std::string told = ShownMessage(address_.shown, WithoutFunction(message));
  throw RuntimeError(number, address_.shown.text + (told.empty() ? "" : ": " + told));
}

// Detects a deleted or replaced file: reading the open one would go on unnoticed.
void Database::CheckFile() {
  if (address_.kind != Kind::sqlite3) return;
  struct stat status {};
  if (stat(address_.path.c_str(), &status) == 0 && status.st_dev == session_->device &&
      status.st_ino == session_->file)
    return;
  usable_ = false;
  throw RuntimeError(ErrorNumber::fileNotOpened, address_.shown.text);
}

template <class Work>
auto Database::Try(Work work) {
  CheckFile();
  ++traffic_.statements;
  try {
    return work();
  } catch (const RuntimeError&) {
    throw;
  } catch (const std::exception& error) {
    session_->forward.reset();
    Fail(error, false);
  }
}

std::vector<Column> Database::Describe(const Statement& statement) {
  auto columns = Try([&] {
    return ColumnsOf(session_->soci, paging_ ? statement.Page(*paging_, 0, 0) : statement.Text());
  });
  if (!paging_) FindPaging(statement, columns);
  return columns;
}

void Database::FindPaging(const Statement& statement, const std::vector<Column>& columns) {
  for (const Paging paging : {Paging::limit, Paging::offsetFetch, Paging::orderOffsetFetch}) {
    try {
      Reader(session_->soci, statement.Page(paging, 0, 1), columns.size()).Next();
      paging_ = paging;
      return;
    } catch (const soci::soci_error&) {
      // This system does not support it. A faulty statement has failed before.
    }
  }
  paging_ = Paging::none;
}

std::string Database::PageStatement(const Statement& statement, const std::vector<Column>& columns,
                                    std::int64_t first, std::int64_t count) const {
  std::string page = session_->beforePage + statement.Page(*paging_, first, count);
  if (address_.kind != Kind::sqlite3) return page;
  // SOCI reads a value by the declared type of its column and truncates what does not fit. In
  // SQLite any column can hold any value, so this reads everything as text.
  std::string names;
  std::string texts;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const std::string name = 'c' + std::to_string(i);
    names += (i == 0 ? "" : ", ") + name;
    texts += (i == 0 ? "CAST(" : ", CAST(") + name + " AS TEXT)";
  }
  return "WITH kvo_page(" + names + ") AS (\n" + page + "\n) SELECT " + texts + " FROM kvo_page";
}

namespace {

Record RecordOf(const Reader& reader, const std::vector<Column>& columns) {
  Record record(columns.size());
  for (std::size_t i = 0; i < columns.size(); ++i)
    if (!reader.IsNull(i)) record[i] = ValueOf(reader.Value(i), columns[i].type);
  return record;
}

}  // namespace

std::vector<Record> Database::Fetch(const Statement& statement, const std::vector<Column>& columns,
                                    std::int64_t first, std::int64_t count) {
  return Try([&] {
    if (!paging_) FindPaging(statement, columns);
    if (*paging_ == Paging::none) return FetchForward(statement, columns, first, count);
    std::vector<Record> records;
    Reader reader(session_->soci, PageStatement(statement, columns, first, count), columns.size());
    while (reader.Next()) records.push_back(RecordOf(reader, columns));
    traffic_.records += records.size();
    return records;
  });
}

std::vector<Record> Database::FetchForward(const Statement& statement,
                                           const std::vector<Column>& columns, std::int64_t first,
                                           std::int64_t count) {
  Session& session = *session_;
  if (session.forward == nullptr || session.forwardStatement != statement.Text() ||
      session.forwardAt > first) {
    session.forward.reset();
    session.forward = std::make_unique<Reader>(session.soci, statement.Text(), columns.size());
    session.forwardStatement = statement.Text();
    session.forwardAt = 0;
  }
  std::vector<Record> records;
  while (records.size() < static_cast<std::size_t>(count)) {
    if (!session.forward->Next()) {
      session.forward.reset();
      break;
    }
    ++traffic_.records;
    if (session.forwardAt++ >= first) records.push_back(RecordOf(*session.forward, columns));
  }
  return records;
}

std::optional<std::int64_t> Database::Count(const Statement& statement) {
  try {
    return Try([&]() -> std::optional<std::int64_t> {
      Reader reader(session_->soci, statement.Count(), 1);
      if (!reader.Next()) return std::nullopt;
      return Parsed<std::int64_t>(reader.Value(0));
    });
  } catch (const RuntimeError& error) {
    // A statement that cannot be nested in another can still be read.
    if (error.Number() == static_cast<int>(ErrorNumber::statementRejected)) return std::nullopt;
    throw;
  }
}

}  // namespace kvo::shop
