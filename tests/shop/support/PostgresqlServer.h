// A PostgreSQL server with an empty cluster of its own, from Debian's package, for the time of its
// life. It listens on a socket in its own folder only.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace kvo::shop {

// Whatever goes wrong is a std::runtime_error that says what; nothing is skipped.
class PostgresqlServer {
 public:
  PostgresqlServer();
  ~PostgresqlServer();
  PostgresqlServer(const PostgresqlServer&) = delete;
  PostgresqlServer& operator=(const PostgresqlServer&) = delete;

  static constexpr std::string_view kUser = "shop";
  static constexpr std::string_view kPassword = "geh'eim@7";

  // user:password@... with the password's characters escaped, and key=value pairs.
  std::string Uri() const;
  std::string Pairs() const;

  void Start();
  void Stop();
  // Runs statements through psql and returns what it printed, unaligned and without headings.
  std::string Run(const std::string& statements) const;
  // As SqliteFile does.
  void FillProducts(int count) const;

 private:
  void RunAs(const std::string& what, const std::string& command) const;

  std::filesystem::path folder_;
  std::filesystem::path programs_;
  pid_t server_ = 0;
};

}  // namespace kvo::shop
