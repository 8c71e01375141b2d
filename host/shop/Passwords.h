// Keeps passwords out of everything that people or logs get to see.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kvo::shop {

// A connection string with "***" in place of every password: user:password@host, and the values of
// password=, pwd=, pass=, passwd= and of any key that ends so, in any case, bare, in quotation
// marks or in braces. What cannot be told apart from the password is hidden with it.
std::string WithoutPasswords(std::string_view connectionString);

// The passwords of a connection string, as they stand in it.
std::vector<std::string> PasswordsOf(std::string_view connectionString);

// A driver's message on one line, with "***" in place of the passwords: as they stand in the
// connection string, without its escapes, and piece by piece, because drivers quote what they could
// not understand.
std::string MessageWithout(const std::vector<std::string>& passwords, std::string_view message);

}  // namespace kvo::shop
