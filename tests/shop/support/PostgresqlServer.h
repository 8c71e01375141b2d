// A PostgreSQL server from Debian's package with an empty cluster of its own. Runs until its
// destruction, and listens only on a socket in its own folder.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace kvo::shop {

// Reports any failure as a std::runtime_error; never skips a test.
class PostgresqlServer {
 public:
  PostgresqlServer();
  ~PostgresqlServer();
  PostgresqlServer(const PostgresqlServer&) = delete;
  PostgresqlServer& operator=(const PostgresqlServer&) = delete;

  static constexpr std::string_view kUser = "shop";
  static constexpr std::string_view kPassword = "geh'eim@7";

  // Connection strings: user:password@... with escaped password, and key=value pairs.
  std::string Uri() const;
  std::string Pairs() const;

  void Start();
  void Stop();
  // Runs statements through psql and returns what it printed, unaligned and without headings.
  std::string Run(const std::string& statements) const;
  // Creates the same table as SqliteFile does.
  void FillProducts(int count) const;

 private:
  void RunAs(const std::string& what, const std::string& command) const;

  std::filesystem::path folder_;
  std::filesystem::path programs_;
  pid_t server_ = 0;
};

}  // namespace kvo::shop
