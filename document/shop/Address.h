// Connection strings: KIND://DETAILS, where KIND names the database system.
//
//   sqlite3://PATH        an existing file
//   postgresql://DETAILS  key=value pairs separated by blanks, or user:password@host:port/database
//   mysql://DETAILS       the same two forms
//   odbc://DETAILS        key=value pairs separated by ";"
#pragma once

#include <string>
#include <string_view>

#include "document/shop/Passwords.h"

namespace kvo::shop {

enum class Kind { sqlite3, postgresql, mysql, odbc };

struct Address {
  Kind kind = Kind::sqlite3;
  std::string driver;   // the name of SOCI's backend
  std::string package;  // the Debian package of the backend
  std::string details;  // as the backend expects them
  std::string path;     // of the file, for sqlite3
  ShownAddress shown;
};

// RuntimeError 3706 for an unknown KIND, 5 for malformed details.
Address ParseAddress(std::string_view connectionString);

}  // namespace kvo::shop
