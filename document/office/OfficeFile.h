// The office from a file: one JSON object with
//
//   contactFields, orderFields  lists of objects with sqlName (not empty), displayName and dataType
//                               (a whole number of 32 bits), all three required; a missing list is
//                               an empty one
//   shopDatabase                a connection string, or null or absent for none; the path of
//                               sqlite3://PATH is relative to the file's folder
//
// Unknown keys are errors, so that misspelt ones are noticed; so are duplicate keys. The file is
// UTF-8.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "document/office/JsonFile.h"
#include "document/office/Office.h"
#include "document/page/TextEdit.h"

namespace kvo::office {

// Its usual name, beside the pages.
inline constexpr std::string_view kOfficeFile = "office.json";

// The rule id of every problem in an office file.
inline constexpr std::string_view kOfficeFileRule = "office-file";

// Throws JsonFileError, or page::FileError when the file cannot be read, is a pipe or a device, or
// is larger than 4 MB.
std::shared_ptr<Office> LoadOffice(const std::string& file, ConnectionFactory connections = {});

// Reads an office from the contents of a file; `file` is its name.
Office::Description ReadOffice(std::string_view contents, const std::string& file);

enum class FieldList { contact, order };
// Returns the edits of the contents that give a field another sqlName, wherever it is listed; none
// when it is not.
page::TextEdits RenameField(std::string_view contents, const std::string& file, FieldList list,
                            std::string_view from, std::string_view to);

}  // namespace kvo::office
