#include "document/shop/Address.h"

#include <array>

#include "common/values/Ascii.h"
#include "common/values/RuntimeError.h"

namespace kvo::shop {
namespace {

constexpr std::size_t npos = std::string_view::npos;

// How long to wait for another program's lock, in seconds: enough for a short write, but not so
// long that a window seems stuck.
constexpr std::string_view kLockWait = "1";
// How long to wait for a server, in seconds.
constexpr std::string_view kConnectWait = "10";

struct KindRow {
  Kind kind;
  std::string_view scheme;
  std::string_view driver;
  std::string_view package;
};
constexpr std::array kKinds = {
    KindRow{Kind::sqlite3, "sqlite3", "sqlite3", "libsoci-sqlite3-4.0"},
    KindRow{Kind::postgresql, "postgresql", "postgresql", "libsoci-postgresql4.0"},
    KindRow{Kind::postgresql, "postgres", "postgresql", "libsoci-postgresql4.0"},
    KindRow{Kind::mysql, "mysql", "mysql", "libsoci-mysql4.0"},
    KindRow{Kind::odbc, "odbc", "odbc", "libsoci-odbc4.0"},
};

// Whether it is "key = value ..." and not "user:password@host/database".
bool IsKeyValueForm(std::string_view details) {
  std::size_t at = 0;
  while (at < details.size() && details[at] == ' ') ++at;
  const std::size_t key = at;
  while (at < details.size() && (details[at] == '_' || IsLetter(details[at]))) ++at;
  if (at == key) return false;
  while (at < details.size() && details[at] == ' ') ++at;
  return at < details.size() && details[at] == '=';
}

[[noreturn]] void Refuse(const Address& address) {
  throw RuntimeError(ErrorNumber::invalidCall, address.shown.text);
}

std::string SqliteDetails(const Address& address) {
  // The backend's quoting cannot express these.
  const bool quote = address.path.find('"') != npos;
  const bool blank = address.path.find(' ') != npos;
  if ((quote && blank) || address.path.find('\0') != npos) Refuse(address);
  return "db=\"" + address.path + "\" readonly=true timeout=" + std::string(kLockWait);
}

std::string PostgresqlDetails(std::string_view details) {
  constexpr std::string_view kTimeout = "connect_timeout";
  const bool timeout = details.find(kTimeout) != npos;
  const std::string wait = std::string(kTimeout) + '=' + std::string(kConnectWait);
  if (IsKeyValueForm(details)) return (timeout ? "" : wait + ' ') + std::string(details);
  std::string uri = "postgresql://" + std::string(details);
  if (!timeout) uri += (details.find('?') == npos ? '?' : '&') + wait;
  return uri;
}

// Returns "key='value' " with each "%xx" decoded; empty for an empty value.
std::string Pair(const Address& address, std::string_view key, std::string_view encoded) {
  if (encoded.empty()) return {};
  for (std::size_t at = encoded.find('%'); at != npos; at = encoded.find('%', at + 1))
    if (at + 2 >= encoded.size() || !IsHexDigit(encoded[at + 1]) || !IsHexDigit(encoded[at + 2]))
      Refuse(address);
  const std::string value = PercentDecoded(encoded);
  const char mark = value.find('\'') == npos ? '\'' : '"';
  if (value.find(mark) != npos) Refuse(address);
  return std::string(key) + '=' + mark + value + mark + ' ';
}

// user:password@host:port/database
std::string MysqlPairs(const Address& address, std::string_view details) {
  std::string pairs;
  if (const std::size_t at = details.rfind('@'); at != npos) {
    const std::string_view user = details.substr(0, at);
    const std::size_t colon = user.find(':');
    pairs += Pair(address, "user", user.substr(0, colon));
    if (colon != npos) pairs += Pair(address, "password", user.substr(colon + 1));
    details.remove_prefix(at + 1);
  }
  const std::size_t slash = details.find('/');
  const std::string_view server = details.substr(0, slash);
  const std::size_t colon = server.find(':');
  pairs += Pair(address, "host", server.substr(0, colon));
  if (colon != npos) pairs += Pair(address, "port", server.substr(colon + 1));
  if (slash != npos) pairs += Pair(address, "dbname", details.substr(slash + 1));
  return pairs;
}

std::string MysqlDetails(const Address& address, std::string_view details) {
  std::string pairs =
      IsKeyValueForm(details) ? std::string(details) + ' ' : MysqlPairs(address, details);
  if (pairs.find("charset") == npos) pairs += "charset=utf8mb4 ";
  if (pairs.find("connect_timeout") == npos)
    pairs += "connect_timeout=" + std::string(kConnectWait);
  return pairs;
}

}  // namespace

Address ParseAddress(std::string_view connectionString) {
  constexpr std::string_view kSchemeEnd = "://";
  Address address;
  address.shown = ShownOf(connectionString);
  const std::size_t end = connectionString.find(kSchemeEnd);
  for (const KindRow& row : kKinds) {
    if (end == npos || connectionString.substr(0, end) != row.scheme) continue;
    const std::string_view details = connectionString.substr(end + kSchemeEnd.size());
    address.kind = row.kind;
    address.driver = row.driver;
    address.package = row.package;
    switch (row.kind) {
      case Kind::sqlite3:
        address.path = details;
        address.details = SqliteDetails(address);
        break;
      case Kind::postgresql:
        address.details = PostgresqlDetails(details);
        break;
      case Kind::mysql:
        address.details = MysqlDetails(address, details);
        break;
      case Kind::odbc:
        address.details = details;
        break;
    }
    return address;
  }
  throw RuntimeError(ErrorNumber::driverNotFound, address.shown.text);
}

}  // namespace kvo::shop
