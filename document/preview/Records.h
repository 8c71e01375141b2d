// The file of records beside a page, preview.json:
//
//   {"records": [{"name": "Anna", "customer": {"FirstName": "Anna", "IsPremium": true},
//                 "order": {"OrderID": 4711, "positions": [{"description": "Tee", ...}]},
//                 "config": {"company-name": "..."}}],
//    "query": "SELECT FirstName, Email FROM Customers"}
//
// Both keys may be missing. Any other object of a record is a group of its own, such as "system".
// A query makes one record of each row, with the columns as fields: "order.OrderID" names the
// group, a plain name belongs to the group whose field it is in the office, else to the customer.
// The first column names the record. Values of the office's flag and date fields become true or
// false and "23.04.2004", however the database writes them. docs/preview.schema.json describes the
// file for other programs.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/values/Object.h"
#include "document/office/JsonFile.h"
#include "document/preview/Record.h"

namespace kvo::preview {

inline constexpr std::string_view kRecordsFile = "preview.json";
inline constexpr std::string_view kRecordsFileRule = "preview-file";

struct RecordsFile {
  std::vector<Record> records;
  std::string query;  // empty for none
};

// Throws office::JsonFileError; `file` is the name for its messages.
RecordsFile ReadRecords(std::string_view contents, const std::string& file);
// Throws page::FileError as well.
RecordsFile LoadRecords(const std::string& file);
// Reads back as the same, but for what JSON cannot tell: numbers without end, and whether a record
// with positions has an empty group "order".
std::string WriteRecords(const RecordsFile& file);

// Returns the edits of the contents that give the values of a field another name; none when no
// record has one. Names ignore case, as those of values do. Throws office::JsonFileError, also for
// a record that has a value of the new name already.
page::TextEdits RenameValues(std::string_view contents, const std::string& file,
                             std::string_view group, std::string_view from, std::string_view to);

// A record with a plausible value for each field of the office, by its type and name, two
// positions, and the company's name. The same each time.
Record MadeUpRecord(const ObjectRef& office);

// The records of a page, in order: those of the file, then the rows of its query; a made-up one
// when there are none. Reads rows in pages, never writes, and holds few at a time.
class RecordList {
 public:
  // `office` has the fields and the shop database; may be nullptr.
  RecordList(RecordsFile file, ObjectRef office);
  ~RecordList();

  // The number of records; may have to ask the database. Throws its failures.
  std::int64_t Count();
  // Nothing beyond the last one.
  std::optional<Record> At(std::int64_t index);
  // The first record of this name, or with this number from 1; a name comes first, but for rows
  // after the numbers of the file's records. Looks at rows one by one.
  std::optional<std::int64_t> Find(std::string_view nameOrNumber);

 private:
  struct Rows;
  Rows* TheRows();  // opened when needed; nullptr without a query
  std::int64_t InFile() const { return static_cast<std::int64_t>(file_.records.size()); }

  RecordsFile file_;
  ObjectRef office_;
  std::unique_ptr<Rows> rows_;
};

}  // namespace kvo::preview
