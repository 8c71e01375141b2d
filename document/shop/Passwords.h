// Keeps passwords out of everything that people or logs get to see. Only what is known to be no
// password is shown; looking for the password itself would miss each new way to write one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kvo::shop {

// What people may see of a connection string.
struct ShownAddress {
  // "KIND://HOST/DATABASE" (the name of the data source with ODBC, the path with SQLite). "..."
  // stands for what is not certain to be that.
  std::string text;
  // Whether the connection string has one of the forms of Address.h. If not, any part of it may be
  // the password.
  bool understood = false;
  // The values that must not be seen, as they stand in the connection string.
  std::vector<std::string> secrets;
};
ShownAddress ShownOf(std::string_view connectionString);

// With each "%xx" as the byte that it stands for.
std::string PercentDecoded(std::string_view text);

// A driver's message on one line; empty when it quotes a secret, or a piece of one, or when it may
// quote one because the connection string is not understood.
std::string ShownMessage(const ShownAddress& address, std::string_view message);

}  // namespace kvo::shop
