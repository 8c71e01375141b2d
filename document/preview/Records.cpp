#include "document/preview/Records.h"

#include <algorithm>
#include <array>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>

#include "common/values/Ascii.h"
#include "document/page/File.h"
#include "document/page/Messages.h"

namespace kvo::preview {
namespace {

using office::JsonNode;
using office::PathTo;
using JsonKind = JsonNode::Kind;
using Json = nlohmann::ordered_json;
using page::messages::Plain;
using page::messages::Quoting;

constexpr std::string_view kRecords = "records";
constexpr std::string_view kQuery = "query";
constexpr std::string_view kName = "name";
constexpr std::string_view kPositions = "positions";
constexpr std::array kFileKeys = {kRecords, kQuery};

constexpr Localized kAnyValue{"ein Text, eine Zahl, true, false oder null",
                              "a text, a number, true, false or null"};

constexpr Quoting kIsList = {
    "{} sind in einem Datensatz die Positionen der Bestellung. Wählen Sie einen anderen Namen.",
    "In a record, {} are the positions of the order. Choose another name."};
// Takes the path of the group and the two names.
constexpr Plain kBothValues = {
    "{}: Der Datensatz hat Werte für beide Namen, \"{}\" und \"{}\". Löschen Sie einen.",
    "{}: the record has values of both names, \"{}\" and \"{}\". Delete one."};

bool IsOrder(std::string_view group) { return EqualIgnoringCase(group, kOrder); }
bool IsPositions(std::string_view key) { return EqualIgnoringCase(key, kPositions); }

std::optional<Variant> ValueOf(const JsonNode& node) {
  using Limits = std::numeric_limits<std::int32_t>;
  switch (node.kind) {
    case JsonKind::null:
      return Variant();
    case JsonKind::flag:
      return Variant(node.flag);
    case JsonKind::integer:
      if (node.integer >= Limits::min() && node.integer <= Limits::max())
        return Variant(static_cast<std::int32_t>(node.integer));
      return Variant(node.number);
    case JsonKind::number:
      return Variant(node.number);
    case JsonKind::text:
      return Variant(node.text);
    default:
      return std::nullopt;
  }
}

// Reads the tree and reports all of its problems.
class RecordsReader : private office::JsonFileReader {
 public:
  explicit RecordsReader(page::ProblemList& problems)
      : JsonFileReader(kRecordsFileRule, problems) {}

  RecordsFile Read(const JsonNode& root) {
    RecordsFile file;
    if (!Is(root, JsonKind::object, "")) return file;
    CheckKeys(root, kFileKeys, "");
    for (const JsonNode& member : root.children) {
      if (member.key == kRecords && Is(member, JsonKind::list, member.key))
        ForEachItem(member, member.key, [&](const JsonNode& item, const std::string& path) {
          file.records.push_back(ReadRecord(item, path));
        });
      if (member.key == kQuery && Is(member, JsonKind::text, member.key)) file.query = member.text;
    }
    return file;
  }

 private:
  template <class Visit>
  static void ForEachItem(const JsonNode& list, const std::string& path, Visit visit) {
    std::size_t index = 0;
    for (const JsonNode& item : list.children)
      visit(item, path + '[' + std::to_string(index++) + ']');
  }

  // Visits the members of an object, but reports those whose name it has already, in any case.
  template <class Visit>
  void ForEachMember(const JsonNode& object, const std::string& path, Visit visit) {
    if (!Is(object, JsonKind::object, path)) return;
    std::set<std::string> names;
    for (const JsonNode& member : object.children) {
      const std::string where = PathTo(path, member.key);
      if (names.insert(Lowered(member.key)).second)
        visit(member, where);
      else
        AddDuplicate(member, where);
    }
  }

  Record ReadRecord(const JsonNode& object, const std::string& path) {
    Record record;
    ForEachMember(object, path, [&](const JsonNode& member, const std::string& where) {
      if (member.key == kName) {
        if (Is(member, JsonKind::text, where)) record.name = member.text;
        return;
      }
      Values& values = record.Group(member.key);
      ForEachMember(member, where, [&](const JsonNode& value, const std::string& at) {
        if (IsOrder(member.key) && IsPositions(value.key))
          ReadPositions(value, at, record.positions.emplace());
        else
          ReadValue(value, at, values);
      });
    });
    return record;
  }

  void ReadPositions(const JsonNode& list, const std::string& path,
                     std::vector<Values>& positions) {
    if (!Is(list, JsonKind::list, path)) return;
    ForEachItem(list, path, [&](const JsonNode& item, const std::string& where) {
      Values& position = positions.emplace_back();
      ForEachMember(item, where, [&](const JsonNode& value, const std::string& at) {
        ReadValue(value, at, position);
      });
    });
  }

  void ReadValue(const JsonNode& node, const std::string& path, Values& values) {
    if (std::optional<Variant> value = ValueOf(node))
      values.Set(node.key, std::move(*value));
    else
      WrongValue(node, kAnyValue, path);
  }
};

// Finds the edits that rename values in a valid file. Reports the records that cannot be renamed.
class ValuesRenamer : private office::JsonFileReader {
 public:
  ValuesRenamer(std::string_view contents, std::string_view group, std::string_view from,
                std::string_view to, page::ProblemList& problems)
      : JsonFileReader(kRecordsFileRule, problems),
        contents_(contents),
        group_(group),
        from_(from),
        to_(to) {}

  page::TextEdits Rename(const JsonNode& root) {
    if (const JsonNode* const records = root.Find(kRecords)) {
      std::size_t index = 0;
      for (const JsonNode& record : records->children) {
        const std::string path =
            PathTo(std::string(kRecords) + '[' + std::to_string(index++) + ']', group_);
        for (const JsonNode& group : record.children)
          if (EqualIgnoringCase(group.key, group_)) RenameIn(group, path);
      }
    }
    return std::move(edits_);
  }

 private:
  // The positions are no value, though they stand among the values of the order.
  bool IsList(std::string_view name) const { return IsOrder(group_) && IsPositions(name); }

  const JsonNode* Find(const JsonNode& group, std::string_view name) const {
    const auto found = std::ranges::find_if(
        group.children, [&](const JsonNode& value) { return EqualIgnoringCase(value.key, name); });
    return found == group.children.end() ? nullptr : &*found;
  }

  void RenameIn(const JsonNode& group, const std::string& path) {
    const JsonNode* const value = Find(group, from_);
    if (value == nullptr || IsList(from_)) return;
    const JsonNode* const other = Find(group, to_);
    if (IsList(to_))
      Add(value->keyAt, kIsList(to_));
    else if (other != nullptr && other != value)
      Add(value->keyAt, kBothValues(path, value->key, other->key));
    else
      edits_.push_back(office::EditOfText(contents_, value->keyAt, to_));
  }

  std::string_view contents_;
  std::string_view group_;
  std::string_view from_;
  std::string_view to_;
  page::TextEdits edits_;
};

Json ToJson(const Variant& value) {
  if (const auto* flag = value.If<bool>()) return *flag;
  if (const auto* integer = value.If<std::int32_t>()) return *integer;
  if (const auto* number = value.If<double>()) return *number;
  if (const auto* text = value.If<std::string>()) return *text;
  return nullptr;
}

Json ToJson(const Values& values) {
  Json json = Json::object();
  for (const auto& [name, value] : values.All()) json[name] = ToJson(value);
  return json;
}

Json ToJson(const Record& record) {
  Json json = Json::object();
  if (!record.name.empty()) json[std::string(kName)] = record.name;
  Json positions = Json::array();
  for (const Values& position : record.positions.value_or(std::vector<Values>()))
    positions.push_back(ToJson(position));
  bool pending = record.positions.has_value();
  const auto add = [&](const std::string& group, Json values) {
    if (pending && IsOrder(group)) {
      values[std::string(kPositions)] = std::move(positions);
      pending = false;
    }
    json[group] = std::move(values);
  };
  for (const auto& [group, values] : record.groups)
    if (group != kName) add(group, ToJson(values));
  if (pending) add(std::string(kOrder), Json::object());
  return json;
}

}  // namespace

RecordsFile ReadRecords(std::string_view contents, const std::string& file) {
  return office::ReadJsonFile(contents, file, kRecordsFileRule,
                              [](const JsonNode& root, page::ProblemList& problems) {
                                return RecordsReader(problems).Read(root);
                              });
}

page::TextEdits RenameValues(std::string_view contents, const std::string& file,
                             std::string_view group, std::string_view from, std::string_view to) {
  return office::ReadJsonFile(
      contents, file, kRecordsFileRule, [&](const JsonNode& root, page::ProblemList& problems) {
        RecordsReader(problems).Read(root);
        if (problems.HasErrors()) return page::TextEdits();
        return ValuesRenamer(contents, group, from, to, problems).Rename(root);
      });
}

RecordsFile LoadRecords(const std::string& file) {
  return ReadRecords(page::ReadRegularFile(file, office::kLargestJsonFile), file);
}

std::string WriteRecords(const RecordsFile& file) {
  Json json{{kRecords, Json::array()}};
  for (const Record& record : file.records) json[std::string(kRecords)].push_back(ToJson(record));
  if (!file.query.empty()) json[std::string(kQuery)] = file.query;
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace kvo::preview
