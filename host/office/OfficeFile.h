// The office from a file: one JSON object with
//
//   contactFields, orderFields  lists of objects with sqlName (not empty), displayName and dataType
//                               (a whole number of 32 bits), all three required; a missing list is
//                               an empty one
//   shopDatabase                a connection string, or null or absent for none; the path of
//                               sqlite3://PATH is relative to the file's folder
//
// Any other key is an error, so that a misspelt one is not passed over; so is a key that stands
// twice. The file is UTF-8.
#pragma once

#include <exception>
#include <memory>
#include <string>
#include <string_view>

#include "common/Localized.h"
#include "host/office/Office.h"
#include "host/page/Problem.h"

namespace kvo::office {

// The rule of every problem of an office file.
inline constexpr std::string_view kOfficeFileRule = "office-file";

// A file that describes no office. Holds everything that is wrong with it, in the order of the
// file.
class OfficeFileError : public std::exception {
 public:
  OfficeFileError(std::string file, page::Problems problems);

  const std::string& File() const { return file_; }
  const page::Problems& Problems() const { return problems_; }
  // One line for each problem: "file:line:column: error: what and what to do [office-file]".
  std::string Text(Language language) const;
  const char* what() const noexcept override { return what_.c_str(); }

 private:
  std::string file_;
  page::Problems problems_;
  std::string what_;
};

// Throws OfficeFileError, or page::FileError when the file cannot be read.
std::shared_ptr<Office> LoadOffice(const std::string& file, ConnectionFactory connections = {});

// The same from the contents of a file; `file` is its name.
Office::Description ReadOffice(std::string_view contents, const std::string& file);

}  // namespace kvo::office
