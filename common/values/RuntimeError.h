// Failures that the system names by number.
#pragma once

#include <exception>
#include <string>
#include <string_view>

#include "common/values/Localized.h"

namespace kvo {

// The numbers in use. A host sees them as they stand: the Windows component as 0x800A0000 + number,
// the programs in their messages and as `error.number` in JSON.
enum class ErrorNumber : int {
  invalidCall = 5,
  overflow = 6,
  subscriptOutOfRange = 9,
  typeMismatch = 13,
  objectNotSet = 91,
  cannotCreateObject = 429,
  unknownMember = 438,
  keyInUse = 457,
  // Databases, numbered as ADO and Jet number them.
  statementRejected = 3000,
  fileNotOpened = 3002,
  databaseLocked = 3006,
  noCurrentRecord = 3021,
  fieldNotFound = 3265,
  closed = 3704,
  alreadyOpen = 3705,
  driverNotFound = 3706,
  noConnection = 3709,
};

// A run-time error: a number, the standing description of that number, and optionally what it was
// about (a member's name, a text that is no number, ...), which is shown behind the description.
class RuntimeError : public std::exception {
 public:
  explicit RuntimeError(ErrorNumber number, std::string about = {});

  int Number() const { return static_cast<int>(number_); }
  std::string Description(Language language) const;
  const std::string& About() const { return about_; }
  const char* what() const noexcept override { return what_.c_str(); }

 private:
  ErrorNumber number_;
  std::string about_;
  std::string what_;
};

// Any failure as the user is told of it, in the user's language where it has one.
std::string FailureText(const std::exception& failure);

}  // namespace kvo
