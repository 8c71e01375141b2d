// docs/preview.schema.json says the same about a file as its reader.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>

#include "document/preview/Records.h"

namespace kvo::preview {
namespace {

using Json = nlohmann::ordered_json;

const std::string kRoot = KVO_SOURCE_DIR;

std::string TextOf(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// Knows the words that the schema uses, and refuses others.
class Schema {
 public:
  explicit Schema(Json root) : root_(std::move(root)) {}

  bool Accepts(const Json& value) const { return Accepts(root_, value); }
  const Json& Root() const { return root_; }

 private:
  static bool IsOf(const std::string& type, const Json& value) {
    return type == "object"    ? value.is_object()
           : type == "array"   ? value.is_array()
           : type == "string"  ? value.is_string()
           : type == "number"  ? value.is_number()
           : type == "boolean" ? value.is_boolean()
           : type == "null"    ? value.is_null()
                               : throw std::runtime_error("type " + type);
  }

  bool Accepts(const Json& schema, const Json& value) const {
    if (schema.is_boolean()) return schema.get<bool>();
    for (const auto& each : schema.items()) {
      const std::string& word = each.key();
      const Json& rule = each.value();
      if (word == "$ref") {
        if (!Accepts(root_.at(Json::json_pointer(rule.get<std::string>().substr(1))), value))
          return false;
      } else if (word == "type") {
        const Json types = rule.is_array() ? rule : Json::array({rule});
        if (std::ranges::none_of(types, [&](const Json& type) { return IsOf(type, value); }))
          return false;
      } else if (word == "items") {
        if (value.is_array() &&
            !std::ranges::all_of(value, [&](const Json& item) { return Accepts(rule, item); }))
          return false;
      } else if (word == "additionalProperties") {
        if (value.is_object() && !AcceptsMembers(schema, value)) return false;
      } else if (!std::set<std::string>{"$schema", "title", "description", "properties",
                                        "patternProperties", "$defs"}
                      .contains(word)) {
        throw std::runtime_error("word " + word);
      }
    }
    return true;
  }

  bool AcceptsMembers(const Json& schema, const Json& object) const {
    const Json properties = schema.value("properties", Json::object());
    const Json patterns = schema.value("patternProperties", Json::object());
    for (const auto& each : object.items()) {
      const std::string& name = each.key();
      const Json& member = each.value();
      bool known = false;
      const auto check = [&](const Json& rule) {
        known = true;
        return Accepts(rule, member);
      };
      if (properties.contains(name) && !check(properties[name])) return false;
      for (const auto& [pattern, rule] : patterns.items())
        if (std::regex_search(name, std::regex(pattern)) && !check(rule)) return false;
      if (!known && !Accepts(schema["additionalProperties"], member)) return false;
    }
    return true;
  }

  Json root_;
};

const Schema& TheSchema() {
  static const Schema schema(Json::parse(TextOf(kRoot + "/docs/preview.schema.json")));
  return schema;
}

bool IsRead(const std::string& text) {
  try {
    ReadRecords(text, "preview.json");
    return true;
  } catch (const office::JsonFileError&) {
    return false;
  }
}

TEST(RecordsSchema, AcceptsWhatIsRead) {
  for (const std::string& text : {
           std::string("{}"),
           std::string(R"({"records": [], "query": ""})"),
           std::string(R"({"records": [{}, {"name": ""}, {"name": "A", "system": {}}]})"),
           std::string(R"({"records": [{"customer": {"a": 1, "b": null, "c": true, "d": "x",
                           "e": 1.5}, "config": {"f": ""}}]})"),
           std::string(R"({"records": [{"ORDER": {"a": 1, "Positions": [{}, {"total": 1,
                           "other": "x"}]}}]})"),
           TextOf(kRoot + "/examples/newsletter/preview.json"),
           TextOf(kRoot + "/examples/templates/preview.json"),
       }) {
    EXPECT_TRUE(IsRead(text)) << text;
    EXPECT_TRUE(TheSchema().Accepts(Json::parse(text))) << text;
  }
}

TEST(RecordsSchema, RefusesWhatIsNotRead) {
  for (const char* text : {
           "[]",
           R"({"record": []})",
           R"({"records": {}})",
           R"({"records": [1]})",
           R"({"query": null})",
           R"({"records": [{"name": 1}]})",
           R"({"records": [{"customer": 1}]})",
           R"({"records": [{"city": "Kiel"}]})",
           R"({"records": [{"customer": {"a": {}}}]})",
           R"({"records": [{"customer": {"positions": []}}]})",
           R"({"records": [{"order": {"positions": {}}}]})",
           R"({"records": [{"Order": {"POSITIONS": [1]}}]})",
           R"({"records": [{"order": {"positions": [{"price": []}]}}]})",
           R"({"records": [{"order": {"other": []}}]})",
       }) {
    EXPECT_FALSE(IsRead(text)) << text;
    EXPECT_FALSE(TheSchema().Accepts(Json::parse(text))) << text;
  }
}

TEST(RecordsSchema, NamesTheColumnsOfPositions) {
  const Json& properties = TheSchema().Root()["$defs"]["position"]["properties"];
  std::vector<std::string> names;
  for (const auto& [name, rule] : properties.items()) names.push_back(name);
  std::vector<std::string> expected;
  for (const PositionColumn& column : kPositionColumns) expected.emplace_back(column.name);
  EXPECT_EQ(names, expected);
}

}  // namespace
}  // namespace kvo::preview
