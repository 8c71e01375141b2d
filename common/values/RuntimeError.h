// Failures that the system names by number.
#pragma once

#include <string>

#include "common/values/Localized.h"

namespace kvo {

// The numbers in use. Hosts see them: as 0x800A0000 + number in the Windows component, in messages
// and as `error.number` in JSON elsewhere.
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

// A run-time error: a number with its fixed description and, optionally, a detail shown after it,
// such as a member's name or a text that is no number.
class RuntimeError : public LocalizedError {
 public:
  explicit RuntimeError(ErrorNumber number, std::string about = {});

  int Number() const { return static_cast<int>(number_); }
  const std::string& About() const { return about_; }

 private:
  ErrorNumber number_;
  std::string about_;
};

}  // namespace kvo
