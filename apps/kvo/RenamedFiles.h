// The files beside pages that hold the names of fields: the office and the records of previews.
#pragma once

#include <optional>
#include <string>

#include "document/page/TextEdit.h"
#include "document/uses/Rename.h"

namespace kvo {

// A file and the edits that it gets.
struct EditedFile {
  std::string file;
  std::string bytes;
  page::TextEdits edits;
};

// Returns the edits of an office, which has to list one of the two names; nothing when that is the
// new one. Throws Failure otherwise.
std::optional<EditedFile> RenamedOffice(const std::string& file, const uses::Renaming& renaming);
// Whether an office can be read and lists the field.
bool OfficeLists(const std::string& file, const uses::Renaming& renaming);

// Returns the edits of a file of records; nothing when it has no value for the field. Throws
// office::JsonFileError for a file with errors or values of both names, and page::FileError.
std::optional<EditedFile> RenamedRecords(const std::string& file, const uses::Renaming& renaming);
// Whether a file of records can be read and has values for the field.
bool RecordsHave(const std::string& file, const uses::Name& name);
// The same for one whose query has the name in it, perhaps as that of a column.
bool QueryMayHave(const std::string& file, const uses::Name& name);

}  // namespace kvo
