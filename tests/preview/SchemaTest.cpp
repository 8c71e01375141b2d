// docs/preview.schema.json says the same about a file as its reader.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "document/preview/Records.h"
#include "tests/support/Schema.h"

namespace kvo::preview {
namespace {

using test::Json;
using test::Schema;

const std::string kRoot = KVO_SOURCE_DIR;

std::string TextOf(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

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
