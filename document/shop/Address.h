// Connection strings: KIND://DETAILS, where KIND names the database system.
//
//   sqlite3://PATH             an existing file
//   postgresql://DETAILS       key=value pairs parted by blanks, or
//   user:password@host:port/database mysql://DETAILS            the same two forms odbc://DETAILS
//   key=value pairs parted by ";"
#pragma once

#include <string>
#include <string_view>

#include "document/shop/Passwords.h"

namespace kvo::shop {

enum class Kind { sqlite3, postgresql, mysql, odbc };

struct Address {
  Kind kind = Kind::sqlite3;
  std::string driver;   // the name of SOCI's backend
  std::string package;  // Debian's, with the backend
  std::string details;  // as the backend wants them
  std::string path;     // of the file, with sqlite3
  ShownAddress shown;
};

// RuntimeError 3706 for another KIND, 5 for details that cannot be understood.
Address ParseAddress(std::string_view connectionString);

}  // namespace kvo::shop
