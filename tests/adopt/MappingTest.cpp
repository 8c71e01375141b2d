// Mapping files: what they say, their errors, and docs/takeover.schema.json.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "document/adopt/Mapping.h"
#include "document/office/Office.h"
#include "tests/support/Schema.h"

namespace kvo::adopt {
namespace {

using test::Json;

std::string TextOf(const std::string& file) {
  std::ifstream in(std::string(KVO_SOURCE_DIR) + '/' + file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// The problems of a file, one line each; empty when it is sound.
std::string Problems(const std::string& text) {
  try {
    ReadMapping(text, "m.json");
    return {};
  } catch (const office::JsonFileError& error) {
    return error.Text(Language::english);
  }
}

const test::Schema& TheSchema() {
  static const test::Schema schema(Json::parse(TextOf("docs/takeover.schema.json")));
  return schema;
}

TEST(Mapping, SchemaAcceptsWhatIsRead) {
  for (const std::string& text : {
           std::string("{}"),
           std::string(R"({"placeholders": [], "namespaces": ["shop", "x1"]})"),
           std::string(R"({"placeholders": [{"pattern": "[A]", "class": "DTCViewtracker"}]})"),
           std::string(R"({"placeholders": [{"patterns": ["{{ {name} }}", "{n}x"],
             "class": "DTCProductList", "properties": {"displaycolumns": 3, "DisplayPrice": false,
             "SelectedProducts": "{name}"}}]})"),
           std::string(R"({"placeholders": [{"pattern": "*|{name}|*", "fields": {
             "a": "customer.A", "b": {"field": "order.B", "format": "0"},
             "c": {"class": "DTCConfig", "properties": {"Item": "c"}}}}]})"),
           std::string(R"({"links": {"class": "DTCClicktracker", "properties":
             {"ClickId": "{number}"}}})"),
           TextOf("examples/takeover/uebernahme.json"),
       }) {
    EXPECT_EQ(Problems(text), "") << text;
    EXPECT_TRUE(TheSchema().Accepts(Json::parse(text))) << text;
  }
}

TEST(Mapping, SchemaRefusesWhatIsNotRead) {
  for (const char* text : {
           "[]",
           R"({"placeholder": []})",
           R"({"placeholders": {}})",
           R"({"placeholders": [{}]})",
           R"({"placeholders": [{"pattern": "[A]"}]})",
           R"({"placeholders": [{"class": "DTCPrint"}]})",
           R"({"placeholders": [{"pattern": "[{name}]", "class": "DTCPrint", "fields": {}}]})",
           R"({"placeholders": [{"pattern": "{name}]", "class": "DTCPrint"}]})",
           R"({"placeholders": [{"pattern": "[{name}]", "fields": {"a": "kunde.A"}}]})",
           R"({"placeholders": [{"pattern": "[{name}]", "fields": {"a": {"format": "0"}}}]})",
           R"({"placeholders": [{"pattern": "[A]", "class": "DTCPrint", "properties":
              {"Value": null}}]})",
           R"({"links": {"class": "DTCElement"}})",
           R"({"namespaces": ["a:"]})",
       }) {
    EXPECT_NE(Problems(text), "") << text;
    EXPECT_FALSE(TheSchema().Accepts(Json::parse(text))) << text;
  }
}

TEST(Mapping, AllErrorsAreNamedWithTheirPlaces) {
  EXPECT_EQ(
      Problems(R"({"placeholders": [
  {"pattern": "[{name}]", "fields": {"a": "customer", "A": "order.B", "c": {"field": "x.y"}}},
  {"pattern": "[x]", "class": "DTCPrnt"},
  {"pattern": "[{name}]", "class": "DTCProductList",
   "properties": {"DisplayColums": 1, "DisplayColumns": "many", "Border": [], "Office": ""}}]})"),
      R"(m.json:2:43: error: placeholders[0].fields.a: expected is "customer.FIELD", "order.FIELD", "config.NAME" or an object with class, here stands a text. [mapping-file]
m.json:2:55: error: placeholders[0].fields.A stands twice. Delete one of the two entries. [mapping-file]
m.json:2:86: error: placeholders[0].fields.c.field: expected is "customer.FIELD", "order.FIELD", "config.NAME" or an object with class, here stands a text. [mapping-file]
m.json:3:31: error: placeholders[1].class: there is no such class; "kvo classes" lists them all. Did you mean "DTCPrint"? [mapping-file]
m.json:4:15: error: placeholders[2].pattern: this pattern stands further up already. Delete one. [mapping-file]
m.json:5:19: error: placeholders[2].properties.DisplayColums: DTCProductList has no such property. Did you mean "DisplayColumns"? [mapping-file]
m.json:5:57: error: placeholders[2].properties.DisplayColumns: the property does not take this value (Type mismatch: "many"). [mapping-file]
m.json:5:75: error: placeholders[2].properties.Border: expected is a text, a number, true or false, here stands a list. [mapping-file]
m.json:5:79: error: placeholders[2].properties.Office: DTCProductList has no such property. [mapping-file])");
}

TEST(Mapping, FieldsAreSuggestedByTheirNames) {
  office::Office::Description description;
  description.contactFields = {
      {"FirstName", "Vorname", 0}, {"CustomerNo", "Kundennr.", 0}, {"Groesse", "Größe", 1}};
  description.orderFields = {{"OrderID", "Bestellnummer", 1}};
  FieldSuggestions fields(std::make_shared<office::Office>(description));
  EXPECT_EQ(fields.For("VORNAME"), "customer.FirstName");
  EXPECT_EQ(fields.For("first_name"), "customer.FirstName");
  EXPECT_EQ(fields.For("kunde.vorname"), "customer.FirstName");
  EXPECT_EQ(fields.For("vornahme"), "customer.FirstName");
  EXPECT_EQ(fields.For("Kunden-Nr"), "customer.CustomerNo");
  EXPECT_EQ(fields.For("GRÖSSE"), "customer.Groesse");
  EXPECT_EQ(fields.For("bestellnummer"), "order.OrderID");
  EXPECT_EQ(fields.For("wetter"), "");
  EXPECT_EQ(fields.For(""), "");
  EXPECT_EQ(FieldSuggestions(nullptr).For("vorname"), "");
}

}  // namespace
}  // namespace kvo::adopt
