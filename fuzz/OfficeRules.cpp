#include "fuzz/OfficeRules.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "common/values/RuntimeError.h"
#include "document/office/OfficeFile.h"
#include "document/page/Utf8.h"
#include "fuzz/Demand.h"

namespace kvo::office {
namespace {

using nlohmann::json;

constexpr std::string_view kMark = "\xEF\xBB\xBF";

bool IsUtf8(const std::string& text) {
  try {
    (void)json(text).dump();
    return true;
  } catch (const json::exception&) {
    return false;
  }
}

void DemandSoundProblem(const page::Problem& problem, std::string_view contents) {
  Demand(problem.severity == page::Severity::error, "a problem is not an error");
  Demand(problem.rule == kOfficeFileRule, "a problem has the wrong rule");
  for (const std::string& message : {problem.message.german, problem.message.english}) {
    Demand(!message.empty(), "a problem has an empty message");
    Demand(IsUtf8(message), "a message is not UTF-8");
  }
  Demand(problem.offset <= contents.size(), "a problem is past the end of the text");
  if (problem.message.english.starts_with("This character is not valid UTF-8"))
    Demand(page::FindInvalidUtf8(contents) == problem.offset, "the bytes there are valid UTF-8");

  std::size_t line = 1;
  std::size_t lineStart = contents.starts_with(kMark) ? kMark.size() : 0;
  for (std::size_t at = lineStart; at < problem.offset; ++at) {
    if (contents[at] != '\n' && (contents[at] != '\r' || contents.substr(at + 1, 1) == "\n"))
      continue;
    ++line;
    lineStart = at + 1;
  }
  Demand(problem.place.line == line, "a problem has the wrong line");
  const std::size_t bytes = problem.offset - std::min(problem.offset, lineStart);
  Demand(problem.place.column >= 1 && problem.place.column <= bytes + 1,
         "a problem's column is past the end of its line");
}

// Parses the text with the JSON library alone; returns nothing if it is not JSON or an object
// repeats a key.
std::optional<json> PlainJson(std::string_view contents) {
  std::vector<std::set<std::string>> open;
  bool twice = false;
  const auto watch = [&](int, json::parse_event_t event, json& value) {
    if (event == json::parse_event_t::object_start) open.emplace_back();
    if (event == json::parse_event_t::object_end) open.pop_back();
    if (event == json::parse_event_t::key)
      twice |= !open.back().insert(value.get<std::string>()).second;
    return true;
  };
  try {
    json parsed = json::parse(contents, watch);
    if (!twice) return parsed;
  } catch (const json::exception&) {
    // Not JSON.
  }
  return std::nullopt;
}

bool HasOnly(const json& object, std::initializer_list<std::string_view> keys) {
  if (!object.is_object()) return false;
  for (const auto& [key, value] : object.items())
    if (std::ranges::find(keys, key) == keys.end()) return false;
  return true;
}

std::optional<Field> PlainField(const json& value) {
  if (!HasOnly(value, {"sqlName", "displayName", "dataType"}) || value.size() != 3)
    return std::nullopt;
  const json& name = value["sqlName"];
  const json& display = value["displayName"];
  const json& type = value["dataType"];
  if (!name.is_string() || name.get_ref<const std::string&>().empty() || !display.is_string() ||
      !type.is_number_integer())
    return std::nullopt;
  using Limits = std::numeric_limits<std::int32_t>;
  if (type.is_number_unsigned() ? type.get<std::uint64_t>() > std::uint64_t{Limits::max()}
                                : type.get<std::int64_t>() < Limits::min())
    return std::nullopt;
  return Field{name.get<std::string>(), display.get<std::string>(), type.get<std::int32_t>()};
}

std::optional<std::vector<Field>> PlainFields(const json& office, const char* key) {
  std::vector<Field> fields;
  if (!office.contains(key)) return fields;
  if (!office[key].is_array()) return std::nullopt;
  for (const json& element : office[key]) {
    const std::optional<Field> field = PlainField(element);
    if (!field) return std::nullopt;
    fields.push_back(*field);
  }
  return fields;
}

// Reads the office by the definition of its file format, except the database's path; returns
// nothing if the text is invalid.
std::optional<Office::Description> PlainReading(std::string_view contents) {
  const std::optional<json> parsed = PlainJson(contents);
  if (!parsed || !HasOnly(*parsed, {"contactFields", "orderFields", "shopDatabase"}))
    return std::nullopt;
  const auto contactFields = PlainFields(*parsed, "contactFields");
  const auto orderFields = PlainFields(*parsed, "orderFields");
  if (!contactFields || !orderFields) return std::nullopt;
  Office::Description office{*contactFields, *orderFields, {}};
  if (parsed->contains("shopDatabase") && !(*parsed)["shopDatabase"].is_null()) {
    if (!(*parsed)["shopDatabase"].is_string()) return std::nullopt;
    office.shopDatabase = (*parsed)["shopDatabase"].get<std::string>();
  }
  return office;
}

bool Same(const std::vector<Field>& a, const std::vector<Field>& b) {
  return std::ranges::equal(a, b, [](const Field& one, const Field& other) {
    return one.sqlName == other.sqlName && one.displayName == other.displayName &&
           one.dataType == other.dataType;
  });
}

void DemandSameDatabase(const std::optional<std::string>& read,
                        const std::optional<std::string>& written) {
  Demand(read.has_value() == written.has_value(), "a database is missing or was added");
  if (!written || read == written) return;
  Demand(written->starts_with("sqlite3://") && read->starts_with("sqlite3:///"),
         "the database differs from the file");
}

// Demands that controls and pages, which bind late, see the same fields.
void DemandFields(Object& office, std::string_view name, const std::vector<Field>& fields) {
  const ObjectRef collection = ToObject(office.Get(name));
  Demand(collection->Get("Count") == Variant(static_cast<std::int32_t>(fields.size())),
         "a collection has the wrong count");
  auto expected = fields.begin();
  ForEach(*collection, [&](const Variant& element) {
    Demand(expected != fields.end(), "enumeration returned too many fields");
    const ObjectRef field = ToObject(element);
    Demand(field->Get("SQLName") == Variant(expected->sqlName) &&
               field->Get("DisplayName") == Variant(expected->displayName) &&
               field->Get("DataType") == Variant(expected->dataType),
           "a field differs from the file");
    const ObjectRef first = ToObject(collection->Item(expected->sqlName));
    Demand(first->Get("SQLName") == Variant(expected->sqlName), "cannot find a field by its name");
    ++expected;
  });
  Demand(expected == fields.end(), "enumeration returned too few fields");
  for (const auto beyond : {std::int32_t{0}, static_cast<std::int32_t>(fields.size()) + 1}) {
    try {
      collection->Item(beyond);
    } catch (const RuntimeError& error) {
      Demand(error.Number() == 9, "wrong error for a missing field");
      continue;
    }
    Demand(false, "there is a field beyond the last one");
  }
}

}  // namespace

void CheckOffice(std::string_view contents) {
  const std::string_view text =
      contents.starts_with(kMark) ? contents.substr(kMark.size()) : contents;
  const std::optional<Office::Description> expected = PlainReading(text);
  Office::Description read;
  try {
    read = ReadOffice(contents, "/offices/office.json");
  } catch (const JsonFileError& error) {
    Demand(!expected.has_value(), "a valid office was refused");
    Demand(!error.Problems().empty(), "there is neither an office nor a problem");
    Demand(std::ranges::is_sorted(error.Problems(), {}, &page::Problem::offset),
           "problems are not in the file's order");
    for (const page::Problem& problem : error.Problems()) DemandSoundProblem(problem, contents);
    Demand(IsUtf8(error.what()), "the error is not UTF-8");
    return;
  }
  Demand(expected.has_value(), "an invalid office was accepted");
  Demand(Same(read.contactFields, expected->contactFields),
         "the contact fields differ from the file");
  Demand(Same(read.orderFields, expected->orderFields), "the order fields differ from the file");
  DemandSameDatabase(read.shopDatabase, expected->shopDatabase);
  const auto office = std::make_shared<Office>(read);
  DemandFields(*office, "ContactFields", read.contactFields);
  DemandFields(*office, "OrderFields", read.orderFields);
  Demand(office->Get("ShopDBConnection").IsEmpty(), "a connection exists that nobody opened");
}

}  // namespace kvo::office
