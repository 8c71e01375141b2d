#include "document/office/OfficeFile.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <limits>
#include <span>
#include <utility>

#include "document/office/JsonFile.h"
#include "document/page/Encoding.h"
#include "document/page/File.h"

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

// Reads the tree and reports all of its problems.
class Reader : private JsonFileReader {
 public:
  Reader(const std::filesystem::path& folder, page::ProblemList& problems)
      : JsonFileReader(kOfficeFileRule, problems), folder_(folder) {}

  Office::Description Read(const JsonNode& root) {
    Office::Description office;
    if (!Is(root, Kind::object, "")) return office;
    CheckKeys(root, kOfficeKeys, "");
    for (const JsonNode& member : root.children) {
      if (member.key == kContactFields) office.contactFields = ReadFields(member);
      if (member.key == kOrderFields) office.orderFields = ReadFields(member);
      if (member.key == kShopDatabase && member.kind != Kind::null &&
          Is(member, Kind::text, std::string(kShopDatabase)))
        office.shopDatabase = Located(member.text);
    }
    return office;
  }

 private:
  std::vector<Field> ReadFields(const JsonNode& list) {
    std::vector<Field> fields;
    if (!Is(list, Kind::list, list.key)) return fields;
    for (const JsonNode& item : list.children)
      fields.push_back(ReadField(item, list.key + '[' + std::to_string(fields.size()) + ']'));
    return fields;
  }

  Field ReadField(const JsonNode& object, const std::string& path) {
    Field field;
    if (!Is(object, Kind::object, path)) return field;
    CheckKeys(object, kFieldKeys, path);
    if (const JsonNode* sqlName = Required(object, kSqlName, Kind::text, path)) {
      field.sqlName = sqlName->text;
      if (field.sqlName.empty())
        Add(sqlName->at, {PathTo(path, kSqlName) + " ist leer. Tragen Sie den Namen des "
                                                   "Datenbankfeldes ein.",
                          PathTo(path, kSqlName) + " is empty. Enter the name of the database "
                                                   "field."});
    }
    if (const JsonNode* display = Required(object, kDisplayName, Kind::text, path))
      field.displayName = display->text;
    if (const JsonNode* type = Required(object, kDataType, Kind::integer, path)) {
      using Limits = std::numeric_limits<std::int32_t>;
      if (type->integer < Limits::min() || type->integer > Limits::max())
        WrongValue(*type, Kind::integer, {"eine größere Zahl", "a larger number"},
                   PathTo(path, kDataType));
      else
        field.dataType = static_cast<std::int32_t>(type->integer);
    }
    return field;
  }

  std::string Located(const std::string& connectionString) const {
    if (!connectionString.starts_with(kSqlite)) return connectionString;
    const std::filesystem::path path = connectionString.substr(kSqlite.size());
    if (path.empty() || path.is_absolute()) return connectionString;
    return std::string(kSqlite) + (folder_ / path).lexically_normal().string();
  }

  const std::filesystem::path& folder_;
};

}  // namespace

Office::Description ReadOffice(std::string_view contents, const std::string& file) {
  const std::filesystem::path folder = std::filesystem::absolute(file).parent_path();
  return ReadJsonFile(contents, file, kOfficeFileRule,
                      [&](const JsonNode& root, page::ProblemList& problems) {
                        return Reader(folder, problems).Read(root);
                      });
}

page::TextEdits RenameField(std::string_view contents, const std::string& file, FieldList list,
                            std::string_view from, std::string_view to) {
  ReadOffice(contents, file);
  const JsonNode root = ParseJson(contents);
  page::TextEdits edits;
  const JsonNode* const fields =
      root.Find(list == FieldList::contact ? kContactFields : kOrderFields);
  if (fields == nullptr) return edits;
  for (const JsonNode& field : fields->children) {
    const JsonNode* const name = field.Find(kSqlName);
    if (name->text == from) edits.push_back(EditOfText(contents, name->at, to));
  }
  return edits;
}

std::shared_ptr<Office> LoadOffice(const std::string& file, ConnectionFactory connections) {
  return std::make_shared<Office>(ReadOffice(page::ReadRegularFile(file, kLargestJsonFile), file),
                                  std::move(connections));
}

}  // namespace kvo::office
