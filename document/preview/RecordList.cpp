#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <utility>

#include "common/frame/Platform.h"
#include "common/values/Ascii.h"
#include "common/values/Recordset.h"
#include "common/values/RuntimeError.h"
#include "document/preview/OfficeFields.h"
#include "document/preview/Records.h"

namespace kvo::preview {
namespace {

// Returns "23.04.2004 16:09:53" for "2004-04-23T16:09:53.5+02", as databases write it, and any
// other text as it is. Leaves out midnight.
std::string GermanDate(std::string text) {
  constexpr std::string_view kForm = "0000-00-00";
  constexpr std::string_view kTimeForm = "00:00:00";
  const auto has = [&](std::string_view form, std::size_t at) {
    if (text.size() < at + form.size()) return false;
    for (std::size_t i = 0; i < form.size(); ++i)
      if (form[i] == '0' ? !IsDigit(text[at + i]) : text[at + i] != form[i]) return false;
    return true;
  };
  if (!has(kForm, 0)) return text;
  std::string date = text.substr(8, 2) + '.' + text.substr(5, 2) + '.' + text.substr(0, 4);
  const std::size_t time = kForm.size() + 1;
  if (text.size() == kForm.size()) return date;
  if ((text[kForm.size()] != ' ' && text[kForm.size()] != 'T') || !has(kTimeForm, time))
    return text;
  const std::string shown = text.substr(time, kTimeForm.size());
  return shown == kTimeForm ? date : date + ' ' + shown;
}

// Databases have neither flags nor dates in common.
Variant FromDatabase(Variant value, std::int32_t dataType) {
  std::string* text = value.If<std::string>();
  if (dataType == kDateField && text != nullptr) return GermanDate(std::move(*text));
  if (dataType != kFlagField || value.IsEmpty()) return value;
  if (text != nullptr && (*text == "t" || *text == "f")) return *text == "t";
  try {
    return ToFlag(value);
  } catch (const RuntimeError&) {
    return value;
  }
}

}  // namespace

// The rows of the query, with the place of each column in a record.
struct RecordList::Rows {
  struct Column {
    ObjectRef field;  // has the value of the current row
    std::string group;
    std::string name;
    std::int32_t dataType = 0;
  };

  Rows(const std::string& query, const ObjectRef& office) {
    const Variant connection = office != nullptr ? office->Get("ShopDBConnection") : Variant();
    if (connection.IsEmpty())
      throw LocalizedError(
          {"Die Abfrage in preview.json braucht die Datenbank des Shops; hier ist keine angegeben.",
           "The query in preview.json needs the shop's database; none is given here."});
    recordset = ThePlatform().NewRecordset();
    const std::array<Variant, 5> arguments = {query, connection, ado::kOpenStatic,
                                              ado::kLockReadOnly, ado::kOptionsText};
    recordset->Call("Open", arguments);
    const std::vector<OfficeField> fields = FieldsOf(office);
    ForEach(*ToObject(recordset->Get("Fields")),
            [&](const Variant& field) { columns.push_back(ColumnOf(ToObject(field), fields)); });
  }

  static Column ColumnOf(const ObjectRef& field, const std::vector<OfficeField>& fields) {
    const std::string name = ToText(field->Get("Name"));
    Column column{field, std::string(kCustomer), name};
    const std::size_t point = name.find('.');
    if (point != std::string::npos) {
      column.group = name.substr(0, point);
      column.name = name.substr(point + 1);
    }
    const auto known = std::ranges::find_if(fields, [&](const OfficeField& each) {
      return EqualIgnoringCase(each.sqlName, column.name) &&
             (point == std::string::npos || EqualIgnoringCase(each.group, column.group));
    });
    if (known == fields.end()) return column;
    column.group = known->group;
    column.dataType = known->dataType;
    return column;
  }

  // False when there is no such row.
  bool MoveTo(std::int64_t row) {
    if (row < 0 || row > std::numeric_limits<std::int32_t>::max()) return false;
    const std::array<Variant, 2> arguments = {static_cast<std::int32_t>(row), ado::kBookmarkFirst};
    recordset->Call("Move", arguments);
    return !ToFlag(recordset->Get("EOF"));
  }

  // Of the current row.
  Variant ValueOf(const Column& column) {
    return FromDatabase(column.field->Get("Value"), column.dataType);
  }
  std::string Name() { return columns.empty() ? std::string() : ToText(ValueOf(columns.front())); }

  std::optional<Record> At(std::int64_t row) {
    if (!MoveTo(row)) return std::nullopt;
    Record record;
    record.name = Name();
    for (const Column& column : columns)
      record.Group(column.group).Set(column.name, ValueOf(column));
    return record;
  }

  std::int64_t Count() {
    if (count < 0) count = ToInteger(recordset->Get("RecordCount"));
    if (count < 0) count = CountBySearch();
    return count;
  }

  // For databases that cannot count: finds the last row in steps that double, then halve.
  std::int64_t CountBySearch() {
    std::int64_t end = 1;
    while (MoveTo(end - 1)) end *= 2;
    std::int64_t least = end / 2;
    while (least < end - 1) {
      const std::int64_t middle = least + (end - least) / 2;
      (MoveTo(middle - 1) ? least : end) = middle;
    }
    return least;
  }

  ObjectRef recordset;
  std::vector<Column> columns;
  std::int64_t count = -1;  // not known yet
};

RecordList::RecordList(RecordsFile file, ObjectRef office)
    : file_(std::move(file)), office_(std::move(office)) {}
RecordList::~RecordList() = default;

RecordList::Rows* RecordList::TheRows() {
  if (file_.query.empty()) return nullptr;
  if (rows_ == nullptr) rows_ = std::make_unique<Rows>(file_.query, office_);
  return rows_.get();
}

std::int64_t RecordList::Count() {
  Rows* rows = TheRows();
  const std::int64_t count = InFile() + (rows != nullptr ? rows->Count() : 0);
  return std::max<std::int64_t>(count, 1);  // the made-up one
}

std::optional<Record> RecordList::At(std::int64_t index) {
  if (index < 0) return std::nullopt;
  if (index < InFile()) return file_.records[static_cast<std::size_t>(index)];
  if (Rows* rows = TheRows())
    if (std::optional<Record> record = rows->At(index - InFile())) return record;
  if (index == 0) return MadeUpRecord(office_);
  return std::nullopt;
}

std::optional<std::int64_t> RecordList::Find(std::string_view nameOrNumber) {
  const auto named = std::ranges::find(file_.records, nameOrNumber, &Record::name);
  if (named != file_.records.end()) return named - file_.records.begin();
  std::int64_t number = 0;
  const char* end = nameOrNumber.data() + nameOrNumber.size();
  const auto [parsed, error] = std::from_chars(nameOrNumber.data(), end, number);
  const bool isNumber = error == std::errc() && parsed == end && number > 0;
  if (isNumber && number <= InFile()) return number - 1;
  if (Rows* rows = TheRows())
    for (std::int64_t row = 0; rows->MoveTo(row); ++row)
      if (rows->Name() == nameOrNumber) return InFile() + row;
  if (isNumber && At(number - 1)) return number - 1;
  const std::optional<Record> only = InFile() == 0 ? At(0) : std::nullopt;
  return only && only->name == nameOrNumber ? std::optional<std::int64_t>(0) : std::nullopt;
}

}  // namespace kvo::preview
