#include "tests/shop/support/SqliteFile.h"

#include <sqlite3.h>

#include <cstdlib>
#include <stdexcept>

namespace kvo::shop {

SqliteFile::SqliteFile(std::string_view name) {
  std::string pattern = (std::filesystem::temp_directory_path() / "kvo-shop-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp: " + pattern);
  folder_ = pattern;
  path_ = folder_ / name;
}

SqliteFile::~SqliteFile() {
  Close();
  std::filesystem::remove_all(folder_);
}

void SqliteFile::Run(std::string_view statements) {
  if (database_ == nullptr && sqlite3_open(path_.c_str(), &database_) != SQLITE_OK)
    throw std::runtime_error("sqlite3_open: " + path_.string());
  if (sqlite3_exec(database_, std::string(statements).c_str(), nullptr, nullptr, nullptr) !=
      SQLITE_OK)
    throw std::runtime_error(sqlite3_errmsg(database_));
}

void SqliteFile::Close() {
  sqlite3_close(database_);
  database_ = nullptr;
}

void SqliteFile::FillProducts(int count) {
  Run("PRAGMA synchronous=off; BEGIN;"
      "CREATE TABLE Products (ProductNo TEXT PRIMARY KEY, Desc1 TEXT, Desc2 TEXT);"
      "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i + 1 < " +
      std::to_string(count) +
      ") INSERT INTO Products SELECT printf('P-%07d', i), 'Artikel ' || i,"
      " CASE WHEN i % 10 = 9 THEN NULL ELSE 'Beschreibung von Artikel ' || i END FROM n;"
      "COMMIT;");
}

}  // namespace kvo::shop
