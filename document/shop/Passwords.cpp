#include "document/shop/Passwords.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <optional>
#include <utility>

#include "common/values/Ascii.h"

namespace kvo::shop {
namespace {

constexpr std::string_view kHidden = "...";
constexpr std::string_view kSchemeEnd = "://";
constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::size_t kNone = std::string_view::npos;

bool IsBlank(char c) { return kBlanks.find(c) != kNone; }

// Bytes beyond ASCII count as letters.
bool IsNameCharacter(char c) {
  return IsDigit(c) || IsLetter(c) || c == '_' || c == '-' || c == '.' ||
         static_cast<unsigned char>(c) >= 0x80;
}
bool IsName(std::string_view text) { return std::ranges::all_of(text, IsNameCharacter); }
bool IsNumber(std::string_view text) { return std::ranges::all_of(text, IsDigit); }

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

template <std::size_t size>
bool IsOneOf(std::string_view key, const std::array<std::string_view, size>& keys) {
  return std::ranges::any_of(keys,
                             [key](std::string_view each) { return EqualIgnoringCase(key, each); });
}

constexpr std::array<std::string_view, 7> kHostKeys = {
    "host", "hostaddr", "server", "servername", "address", "dsn", "data source"};
constexpr std::array<std::string_view, 4> kDatabaseKeys = {"dbname", "db", "database",
                                                           "initial catalog"};
constexpr std::array<std::string_view, 10> kHarmlessKeys = {
    "port",    "user",    "uid",    "username",        "user id",
    "charset", "sslmode", "driver", "connect_timeout", "application_name"};

// The parts of a connection string's details that may be shown, and the secrets.
struct Parts {
  std::string_view host;
  std::string_view database;
  std::vector<std::string> secrets;
};

// Removes a value from the front of `rest`: quoted, in braces, or up to one of `ends`. Nothing when
// the quote is not closed or text follows it.
std::optional<std::string_view> TakeValue(std::string_view& rest, std::string_view ends) {
  const std::string_view all = rest;
  const char first = rest.empty() ? '\0' : rest.front();
  if (first != '\'' && first != '"' && first != '{') {
    std::size_t end = 0;
    while (end < rest.size() && ends.find(rest[end]) == kNone) end += rest[end] == '\\' ? 2 : 1;
    end = std::min(end, rest.size());
    rest.remove_prefix(end);
    return all.substr(0, end);
  }
  const char mark = first == '{' ? '}' : first;
  // A mark inside the value is doubled or follows "\".
  for (std::size_t at = 1; at < all.size(); ++at) {
    if (all[at] == '\\' && first != '{') {
      ++at;
    } else if (all[at] == mark) {
      if (at + 1 < all.size() && all[at + 1] == mark) {
        ++at;
        continue;
      }
      rest.remove_prefix(at + 1);
      if (!rest.empty() && ends.find(rest.front()) == kNone) return std::nullopt;
      return all.substr(1, at - 1);
    }
  }
  return std::nullopt;
}

// Parses "key = value" pairs, separated by one of `ends`; blanks may surround "=".
std::optional<Parts> PartsOfPairs(std::string_view rest, std::string_view ends) {
  const bool byBlanks = ends.find(' ') != kNone;
  Parts parts;
  for (;;) {
    while (!rest.empty() && (IsBlank(rest.front()) || ends.find(rest.front()) != kNone))
      rest.remove_prefix(1);
    if (rest.empty()) return parts;
    const std::size_t equals = rest.find('=');
    if (equals == kNone) return std::nullopt;
    const std::string_view key = Trimmed(rest.substr(0, equals));
    rest.remove_prefix(equals + 1);
    while (!rest.empty() && IsBlank(rest.front())) rest.remove_prefix(1);
    // Keys of several words occur only where ";" separates the pairs.
    const bool isKey = std::ranges::all_of(
        key, [byBlanks](char c) { return IsNameCharacter(c) || (!byBlanks && c == ' '); });
    if (key.empty() || !isKey) return std::nullopt;
    const auto value = TakeValue(rest, ends);
    if (!value) return std::nullopt;
    if (IsOneOf(key, kHostKeys))
      parts.host = *value;
    else if (IsOneOf(key, kDatabaseKeys))
      parts.database = *value;
    else if (!IsOneOf(key, kHarmlessKeys))
      parts.secrets.emplace_back(*value);
  }
}

// user:password@host:port/database?key=value&...
std::optional<Parts> PartsOfAddress(std::string_view details) {
  Parts parts;
  // A password may contain "@" and, against the rules, "?" and "/".
  const std::size_t at = details.rfind('@');
  const std::string_view user = details.substr(0, at == kNone ? 0 : at);
  std::string_view server = at == kNone ? details : details.substr(at + 1);
  if (const std::size_t colon = user.find(':'); colon != kNone)
    parts.secrets.emplace_back(user.substr(colon + 1));
  // But the "@" may also be in a parameter after the database.
  if (user.find('?') != kNone) return std::nullopt;
  if (const std::size_t query = server.find('?'); query != kNone) {
    const auto more = PartsOfPairs(server.substr(query + 1), "&");
    if (!more) return std::nullopt;
    parts.secrets.insert(parts.secrets.end(), more->secrets.begin(), more->secrets.end());
    server = server.substr(0, query);
  }
  const std::size_t slash = server.find('/');
  if (slash != kNone) parts.database = server.substr(slash + 1);
  server = server.substr(0, slash);
  const std::size_t bracket = server.starts_with('[') ? server.find(']') : 0;
  if (bracket == kNone) return std::nullopt;
  const std::size_t colon = server.find(':', bracket);
  // Text in place of a port may be the password of an address without a server.
  if (colon != kNone && !IsNumber(server.substr(colon + 1))) return std::nullopt;
  if (colon != kNone && at == kNone) parts.secrets.emplace_back(server.substr(colon + 1));
  parts.host = server.substr(0, colon);
  return parts;
}

bool IsHost(std::string_view host) {
  if (!host.starts_with('['))
    return std::ranges::all_of(host, [](char c) {
      return IsNameCharacter(c) || c == '/';  // the folder of a socket
    });
  return host.ends_with(']') && std::ranges::all_of(host.substr(1, host.size() - 2), [](char c) {
           return IsHexDigit(c) || c == ':' || c == '.';
         });
}

// Whether details are pairs and not an address.
bool ArePairs(std::string_view details) {
  const std::size_t end = details.find_first_of("=@:/?;&'\"");
  return end != kNone && details[end] == '=';
}

std::optional<Parts> PartsOf(std::string_view scheme, std::string_view details) {
  std::optional<Parts> parts;
  if (scheme == "odbc")
    parts = PartsOfPairs(details, ";");
  else if (ArePairs(details))
    parts = PartsOfPairs(details, kBlanks);
  else
    parts = PartsOfAddress(details);
  if (!parts || !IsHost(parts->host) || !IsName(parts->database)) return std::nullopt;
  return parts;
}

std::string Unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) ++i;
    plain += text[i];
  }
  return plain;
}

// Whether the message contains the word, or a revealing piece of a longer one.
bool Quotes(std::string_view message, std::string_view word) {
  constexpr std::size_t kPiece = 4;
  if (word.size() > kPiece) {
    for (std::size_t at = 0; at + kPiece <= word.size(); ++at)
      if (message.find(word.substr(at, kPiece)) != kNone) return true;
    return false;
  }
  for (std::size_t at = message.find(word); at != kNone; at = message.find(word, at + 1)) {
    const std::size_t end = at + word.size();
    if ((at == 0 || !IsNameCharacter(message[at - 1])) &&
        (end == message.size() || !IsNameCharacter(message[end])))
      return true;
  }
  return false;
}

bool QuotesAnyWordOf(std::string_view message, std::string_view secret) {
  while (!secret.empty()) {
    const auto end = std::ranges::find_if_not(secret, IsNameCharacter);
    const std::string_view word(secret.begin(), end);
    if (!word.empty() && Quotes(message, word)) return true;
    secret.remove_prefix(std::min(word.size() + 1, secret.size()));
  }
  return false;
}

}  // namespace

std::string PercentDecoded(std::string_view text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char* const digits = text.data() + i + 1;
    unsigned byte = 0;
    if (text[i] == '%' && i + 2 < text.size() &&
        std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
      decoded += static_cast<char>(byte);
      i += 2;
    } else {
      decoded += text[i];
    }
  }
  return decoded;
}

ShownAddress ShownOf(std::string_view connectionString) {
  const std::size_t end = connectionString.find(kSchemeEnd);
  const std::string_view scheme = connectionString.substr(0, end == kNone ? 0 : end);
  if (scheme.empty() ||
      !std::ranges::all_of(scheme, [](char c) { return IsLetter(c) || IsDigit(c); }))
    return {std::string(kHidden), false, {}};
  ShownAddress shown{std::string(scheme) + std::string(kSchemeEnd), true, {}};
  const std::string_view details = connectionString.substr(end + kSchemeEnd.size());
  if (scheme == "sqlite3") {
    // Only a path, unless it looks like more.
    const std::size_t more = details.find_first_of("?;&=@:");
    shown.text += details.substr(0, more);
    if (more == kNone) return shown;
    shown.secrets.emplace_back(details.substr(more));
  } else if (auto parts = PartsOf(scheme, details)) {
    shown.text += parts->host;
    if (!parts->database.empty()) shown.text += '/' + std::string(parts->database);
    shown.secrets = std::move(parts->secrets);
    return shown;
  }
  shown.understood = false;
  shown.text += kHidden;
  return shown;
}

std::string ShownMessage(const ShownAddress& address, std::string_view message) {
  if (!address.understood) return {};
  for (const std::string& secret : address.secrets)
    for (const std::string& form : {secret, PercentDecoded(secret), Unescaped(secret)})
      if (QuotesAnyWordOf(message, form)) return {};
  std::string line;
  for (const char c : message) {
    const bool blank = IsBlank(c);
    if (blank && (line.empty() || line.back() == ' ')) continue;
    line += blank ? ' ' : c;
  }
  while (line.ends_with(' ')) line.pop_back();
  return line;
}

}  // namespace kvo::shop
