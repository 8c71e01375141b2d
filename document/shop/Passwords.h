// Keeps passwords out of everything that people or logs see. Shows only what is known not to be a
// password; searching for the password would miss new ways of writing one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kvo::shop {

// The part of a connection string that people may see.
struct ShownAddress {
  // "KIND://HOST/DATABASE" (the name of the data source with ODBC, the path with SQLite). "..."
  // replaces anything uncertain.
  std::string text;
  // Whether the connection string has one of the forms of Address.h. If not, any part of it may be
  // the password.
  bool understood = false;
  // The secret values, as written in the connection string.
  std::vector<std::string> secrets;
};
ShownAddress ShownOf(std::string_view connectionString);

// Replaces each "%xx" by its byte.
std::string PercentDecoded(std::string_view text);

// Returns a driver's message on one line; empty when it quotes a secret or a piece of one, or may
// quote one because the connection string is not understood.
std::string ShownMessage(const ShownAddress& address, std::string_view message);

}  // namespace kvo::shop
