#include "host/office/OfficeFile.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <limits>
#include <span>
#include <utility>

#include "common/Suggest.h"
#include "host/office/JsonTree.h"
#include "host/page/File.h"
#include "host/page/ProblemList.h"

namespace kvo::office {
namespace {

using Kind = JsonNode::Kind;

constexpr std::string_view kContactFields = "contactFields";
constexpr std::string_view kOrderFields = "orderFields";
constexpr std::string_view kShopDatabase = "shopDatabase";
constexpr std::string_view kSqlName = "sqlName";
constexpr std::string_view kDisplayName = "displayName";
constexpr std::string_view kDataType = "dataType";

constexpr std::array kOfficeKeys = {kContactFields, kOrderFields, kShopDatabase};
constexpr std::array kFieldKeys = {kSqlName, kDisplayName, kDataType};

constexpr std::string_view kSqlite = "sqlite3://";

Localized NameOf(Kind kind) {
  switch (kind) {
    case Kind::null:
      return {"null", "null"};
    case Kind::flag:
      return {"ein Wahrheitswert", "a flag"};
    case Kind::integer:
    case Kind::number:
      return {"eine Zahl", "a number"};
    case Kind::text:
      return {"ein Text", "a text"};
    case Kind::list:
      return {"eine Liste", "a list"};
    case Kind::object:
      break;
  }
  return {"ein Objekt", "an object"};
}

// What a value is expected to be, as it stands behind "expected".
constexpr Localized kObjectWanted = {"ein Objekt { ... }", "an object { ... }"};
constexpr Localized kListWanted = {"eine Liste [ ... ]", "a list [ ... ]"};
constexpr Localized kTextWanted = {"ein Text in Anführungszeichen", "a text in quotation marks"};
constexpr Localized kIntegerWanted = {"eine ganze Zahl von 32 Bit", "a whole number of 32 bits"};

std::string Quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

// "contactFields[2].dataType"; the file as a whole has no path.
std::string PathTo(const std::string& parent, std::string_view key) {
  return parent.empty() ? std::string(key) : parent + '.' + std::string(key);
}

// Reads the tree and collects everything that is wrong with it.
class Reader {
 public:
  Reader(const std::filesystem::path& folder, page::ProblemList& problems)
      : folder_(folder), problems_(problems) {}

  Office::Description Read(const JsonNode& root) {
    Office::Description office;
    if (!Is(root, Kind::object, kObjectWanted, "")) return office;
    CheckKeys(root, kOfficeKeys, "");
    for (const JsonNode& member : root.children) {
      if (member.key == kContactFields) office.contactFields = ReadFields(member);
      if (member.key == kOrderFields) office.orderFields = ReadFields(member);
      if (member.key == kShopDatabase && member.kind != Kind::null &&
          Is(member, Kind::text, kTextWanted, std::string(kShopDatabase)))
        office.shopDatabase = Located(member.text);
    }
    return office;
  }

 private:
  std::vector<Field> ReadFields(const JsonNode& list) {
    std::vector<Field> fields;
    if (!Is(list, Kind::list, kListWanted, list.key)) return fields;
    for (const JsonNode& item : list.children)
      fields.push_back(ReadField(item, list.key + '[' + std::to_string(fields.size()) + ']'));
    return fields;
  }

  Field ReadField(const JsonNode& object, const std::string& path) {
    Field field;
    if (!Is(object, Kind::object, kObjectWanted, path)) return field;
    CheckKeys(object, kFieldKeys, path);
    if (const JsonNode* sqlName = Required(object, kSqlName, Kind::text, kTextWanted, path)) {
      field.sqlName = sqlName->text;
      if (field.sqlName.empty())
        Add(sqlName->at, {PathTo(path, kSqlName) + " ist leer. Tragen Sie den Namen des "
                                                   "Datenbankfeldes ein.",
                          PathTo(path, kSqlName) + " is empty. Enter the name of the database "
                                                   "field."});
    }
    if (const JsonNode* display = Required(object, kDisplayName, Kind::text, kTextWanted, path))
      field.displayName = display->text;
    if (const JsonNode* type = Required(object, kDataType, Kind::integer, kIntegerWanted, path)) {
      using Limits = std::numeric_limits<std::int32_t>;
      if (type->integer < Limits::min() || type->integer > Limits::max())
        WrongValue(type->at, PathTo(path, kDataType), kIntegerWanted,
                   {"eine größere Zahl", "a larger number"});
      else
        field.dataType = static_cast<std::int32_t>(type->integer);
    }
    return field;
  }

  // A member that has to be there, of the given kind; nullptr after a problem.
  const JsonNode* Required(const JsonNode& object, std::string_view key, Kind kind,
                           const Localized& wanted, const std::string& path) {
    for (const JsonNode& member : object.children)
      if (member.key == key) return Is(member, kind, wanted, PathTo(path, key)) ? &member : nullptr;
    Add(object.at,
        {path + ": Der Schlüssel " + Quoted(key) + " fehlt. Ergänzen Sie ihn; erwartet wird " +
             std::string(wanted.german) + '.',
         path + ": the key " + Quoted(key) + " is missing. Add it; expected is " +
             std::string(wanted.english) + '.'});
    return nullptr;
  }

  bool Is(const JsonNode& node, Kind kind, const Localized& wanted, const std::string& path) {
    if (node.kind == kind) return true;
    WrongValue(node.at, path, wanted, NameOf(node.kind));
    return false;
  }

  void WrongValue(std::size_t at, const std::string& path, const Localized& wanted,
                  const Localized& found) {
    const bool whole = path.empty();
    Add(at, {(whole ? "Die Datei" : path) + ": Erwartet wird " + std::string(wanted.german) +
                 ", hier steht " + std::string(found.german) + '.',
             (whole ? "The file" : path) + ": expected is " + std::string(wanted.english) +
                 ", here stands " + std::string(found.english) + '.'});
  }

  void CheckKeys(const JsonNode& object, std::span<const std::string_view> known,
                 const std::string& path) {
    for (std::size_t i = 0; i < object.children.size(); ++i) {
      const JsonNode& member = object.children[i];
      const std::string where = PathTo(path, member.key);
      bool twice = false;
      for (std::size_t j = 0; j < i; ++j) twice |= object.children[j].key == member.key;
      if (twice)
        Add(member.keyAt, {where + " steht zweimal. Löschen Sie einen der beiden Einträge.",
                           where + " stands twice. Delete one of the two entries."});
      else if (std::find(known.begin(), known.end(), member.key) == known.end())
        AddUnknown(member, where, known);
    }
  }

  void AddUnknown(const JsonNode& member, const std::string& where,
                  std::span<const std::string_view> known) {
    page::Message message = {where + ": Diesen Schlüssel gibt es nicht.",
                             where + ": there is no such key."};
    if (const auto meant = Suggest(member.key, known); !meant.empty()) {
      message.german += " Meinten Sie " + Quoted(meant) + '?';
      message.english += " Did you mean " + Quoted(meant) + '?';
    } else {
      std::string names;
      for (const std::string_view name : known) names += (names.empty() ? "" : ", ") + Quoted(name);
      message.german += " Hier gelten: " + names + '.';
      message.english += " What counts here: " + names + '.';
    }
    Add(member.keyAt, std::move(message));
  }

  std::string Located(const std::string& connectionString) const {
    if (!connectionString.starts_with(kSqlite)) return connectionString;
    const std::filesystem::path path = connectionString.substr(kSqlite.size());
    if (path.empty() || path.is_absolute()) return connectionString;
    return std::string(kSqlite) + (folder_ / path).lexically_normal().string();
  }

  void Add(std::size_t at, page::Message message) {
    problems_.Add(at, kOfficeFileRule, {}, std::move(message));
  }

  const std::filesystem::path& folder_;
  page::ProblemList& problems_;
};

}  // namespace

OfficeFileError::OfficeFileError(std::string file, page::Problems problems)
    : file_(std::move(file)), problems_(std::move(problems)), what_(Text(Language::english)) {}

std::string OfficeFileError::Text(Language language) const {
  std::string text;
  for (const page::Problem& problem : problems_) {
    if (!text.empty()) text += '\n';
    text += page::Describe(problem, file_, language);
  }
  return text;
}

Office::Description ReadOffice(std::string_view contents, const std::string& file) {
  page::ProblemList problems;
  Office::Description office;
  auto parsed = ParseJson(contents);
  if (auto* error = std::get_if<JsonError>(&parsed)) {
    problems.Add(error->at, kOfficeFileRule, {}, std::move(error->message));
  } else {
    const std::filesystem::path folder = std::filesystem::absolute(file).parent_path();
    office = Reader(folder, problems).Read(std::get<JsonNode>(parsed));
  }
  if (problems.HasErrors())
    throw OfficeFileError(file, problems.Take(contents, page::PageEncoding()));
  return office;
}

std::shared_ptr<Office> LoadOffice(const std::string& file, ConnectionFactory connections) {
  return std::make_shared<Office>(ReadOffice(page::ReadFile(file), file), std::move(connections));
}

}  // namespace kvo::office
