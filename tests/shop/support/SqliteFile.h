// An SQLite file in a temporary folder of its own.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

struct sqlite3;

namespace kvo::shop {

class SqliteFile {
 public:
  explicit SqliteFile(std::string_view name = "shop.db");
  ~SqliteFile();
  SqliteFile(const SqliteFile&) = delete;
  SqliteFile& operator=(const SqliteFile&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  std::string ConnectionString() const { return "sqlite3://" + path_.string(); }

  // Runs statements on a connection that stays open, so that it can hold a lock. Throws
  // std::runtime_error.
  void Run(std::string_view statements);
  // Closes the connection.
  void Close();

  // Creates a table Products with `count` records: ProductNo "P-0000000", Desc1 "Artikel 0", Desc2
  // null in every tenth.
  void FillProducts(int count);

 private:
  std::filesystem::path folder_;
  std::filesystem::path path_;
  sqlite3* database_ = nullptr;
};

}  // namespace kvo::shop
