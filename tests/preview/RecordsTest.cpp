#include "document/preview/Records.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

#include "document/page/File.h"

namespace kvo::preview {
namespace {

std::string ProblemsOf(std::string_view contents, Language language = Language::english) {
  try {
    ReadRecords(contents, "preview.json");
  } catch (const office::JsonFileError& error) {
    return error.Text(language) + '\n';
  }
  return {};
}

Record OnlyRecord(std::string_view contents) {
  const RecordsFile file = ReadRecords(contents, "preview.json");
  EXPECT_EQ(file.records.size(), 1U);
  return file.records.at(0);
}

TEST(Records, HaveValuesInGroups) {
  const Record record = OnlyRecord(R"({"records": [{
    "name": "Anna",
    "customer": {"FirstName": "Anna", "IsPremium": true, "Points": 12, "Rate": 1.5, "City": null},
    "order": {"OrderID": 4711},
    "config": {"company-name": "Röst & Söhne"},
    "system": {}
  }]})");
  EXPECT_EQ(record.name, "Anna");
  EXPECT_FALSE(record.madeUp);
  ASSERT_EQ(record.groups.size(), 4U);
  EXPECT_EQ(record.groups[0].first, "customer");
  EXPECT_EQ(record.groups[3].first, "system");
  const auto& customer = record.groups[0].second.All();
  ASSERT_EQ(customer.size(), 5U);
  EXPECT_EQ(customer[0], std::pair(std::string("FirstName"), Variant("Anna")));
  EXPECT_EQ(customer[1].second, Variant(true));
  EXPECT_EQ(customer[2].second, Variant(12));
  EXPECT_EQ(customer[3].second, Variant(1.5));
  EXPECT_EQ(customer[4].second, Variant());
  EXPECT_EQ(*record.Find("Config", "Company-Name"), Variant("Röst & Söhne"));
  EXPECT_EQ(record.Find("customer", "Email"), nullptr);
  EXPECT_EQ(record.Find("shop", "Email"), nullptr);
  EXPECT_FALSE(record.positions.has_value());
}

TEST(Records, HavePositionsWithTheOrder) {
  const Record record = OnlyRecord(R"({"records": [{"Order": {"OrderID": 1, "Positions": [
    {"description": "Tee", "quantity": 2, "colour": "grün"}, {}]}}]})");
  EXPECT_EQ(record.groups.at(0).second.All().size(), 1U);
  ASSERT_EQ(record.positions.value().size(), 2U);
  EXPECT_EQ(*record.positions->at(0).Find("quantity"), Variant(2));
  EXPECT_EQ(*record.positions->at(0).Find("colour"), Variant("grün"));
  EXPECT_TRUE(record.positions->at(1).All().empty());
  EXPECT_TRUE(OnlyRecord(R"({"records": [{"order": {"positions": []}}]})").positions.has_value());
  // Only an order has positions.
  EXPECT_NE(ProblemsOf(R"({"records": [{"customer": {"positions": []}}]})"), "");
}

TEST(Records, WholeNumbersBeyond32BitsAreNumbers) {
  const Record record = OnlyRecord(
      R"({"records": [{"a": {"b": 2147483648, "c": -2147483648, "d": 18446744073709551615}}]})");
  EXPECT_EQ(*record.Find("a", "b"), Variant(2147483648.0));
  EXPECT_EQ(*record.Find("a", "c"), Variant(std::numeric_limits<std::int32_t>::min()));
  EXPECT_EQ(*record.Find("a", "d"), Variant(18446744073709551615.0));
}

TEST(Records, BothPartsOfTheFileMayBeMissing) {
  EXPECT_TRUE(ReadRecords("{}", "").records.empty());
  EXPECT_TRUE(ReadRecords("{}", "").query.empty());
  EXPECT_EQ(ReadRecords(R"({"query": "SELECT 1"})", "").query, "SELECT 1");
}

TEST(Records, AllProblemsAreReportedWithTheirPlaces) {
  const char* contents = R"({
  "record": [],
  "records": [
    {"name": 7, "customer": {"A": 1, "a": 2, "B": [1]}, "CUSTOMER": {}},
    {"city": "Kiel", "order": {"positions": [{"price": {}}, 5]}},
    {"order": {"positions": {}}},
    null
  ],
  "query": ["SELECT 1"],
  "query": ""
})";
  EXPECT_EQ(
      ProblemsOf(contents),
      "preview.json:2:3: error: record: there is no such key. Did you mean \"records\"? "
      "[preview-file]\n"
      "preview.json:4:14: error: records[0].name: expected is a text in quotation marks, here "
      "stands a number. [preview-file]\n"
      "preview.json:4:38: error: records[0].customer.a stands twice. Delete one of the two "
      "entries. [preview-file]\n"
      "preview.json:4:51: error: records[0].customer.B: expected is a text, a number, true, false "
      "or null, here stands a list. [preview-file]\n"
      "preview.json:4:57: error: records[0].CUSTOMER stands twice. Delete one of the two entries. "
      "[preview-file]\n"
      "preview.json:5:14: error: records[1].city: expected is an object { ... }, here stands a "
      "text. [preview-file]\n"
      "preview.json:5:56: error: records[1].order.positions[0].price: expected is a text, a "
      "number, true, false or null, here stands an object. [preview-file]\n"
      "preview.json:5:61: error: records[1].order.positions[1]: expected is an object { ... }, "
      "here stands a number. [preview-file]\n"
      "preview.json:6:29: error: records[2].order.positions: expected is a list [ ... ], here "
      "stands an object. [preview-file]\n"
      "preview.json:7:5: error: records[3]: expected is an object { ... }, here stands null. "
      "[preview-file]\n"
      "preview.json:9:12: error: query: expected is a text in quotation marks, here stands a list. "
      "[preview-file]\n"
      "preview.json:10:3: error: query stands twice. Delete one of the two entries. "
      "[preview-file]\n");
  EXPECT_EQ(ProblemsOf(R"({"records": [{"a": {"b": {}}}]})", Language::german),
            "preview.json:1:26: Fehler: records[0].a.b: Erwartet wird ein Text, eine Zahl, true, "
            "false oder null, hier steht ein Objekt. [preview-file]\n");
}

TEST(Records, AFileThatIsNotJsonHasAPlace) {
  EXPECT_EQ(ProblemsOf("{\"records\": [,]}"),
            "preview.json:1:14: error: ',' cannot stand here. Check commas, quotation marks and "
            "brackets in front of it. [preview-file]\n");
  EXPECT_NE(ProblemsOf(std::string(100'000, '[')).find("nested too deeply"), std::string::npos);
  EXPECT_NE(ProblemsOf("").find("The file is empty"), std::string::npos);
}

TEST(Records, AreWrittenForPeopleToo) {
  RecordsFile file;
  Record& record = file.records.emplace_back();
  record.name = "Anna";
  record.Group("customer").Set("City", "Köln & \"Umland\"");
  record.Group("order").Set("Total", 12.5);
  record.positions.emplace().emplace_back().Set("quantity", 2);
  record.Group("config");
  file.query = "SELECT 1";
  EXPECT_EQ(WriteRecords(file), R"({
  "records": [
    {
      "name": "Anna",
      "customer": {
        "City": "Köln & \"Umland\""
      },
      "order": {
        "Total": 12.5,
        "positions": [
          {
            "quantity": 2
          }
        ]
      },
      "config": {}
    }
  ],
  "query": "SELECT 1"
}
)");
}

TEST(Records, PositionsWithoutAnOrderAreWritten) {
  RecordsFile file;
  file.records.emplace_back().positions.emplace();
  const RecordsFile again = ReadRecords(WriteRecords(file), "");
  EXPECT_TRUE(again.records.at(0).positions.has_value());
}

// Makes files of any contents.
class Maker {
 public:
  explicit Maker(unsigned seed) : random_(seed) {}

  RecordsFile File() {
    RecordsFile file;
    file.records.resize(Below(4));
    for (Record& record : file.records) Fill(record);
    if (Below(2) == 0) file.query = Text();
    return file;
  }

 private:
  std::size_t Below(std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
  }

  std::string Text() {
    static const std::string kParts[] = {"a",  "B", "\"", "\\", "&",    "<",      "ä", "€",
                                         "\n", "/", ".",  "#",  "\x01", "\u2028", "😀", "0"};
    std::string text;
    for (std::size_t length = Below(6); length > 0; --length) text += kParts[Below(16)];
    return text;
  }

  Variant Value() {
    switch (Below(6)) {
      case 0:
        return {};
      case 1:
        return Below(2) == 0;
      case 2:
        return static_cast<std::int32_t>(random_());
      case 3:
        return static_cast<double>(Below(1000)) - 500;  // a number, though it is whole
      case 4:
        return std::ldexp(static_cast<double>(random_()), static_cast<int>(Below(2000)) - 1020);
      default:
        return Text();
    }
  }

  Values SomeValues(bool order) {
    Values values;
    for (std::size_t count = Below(4); count > 0; --count)
      values.Set((order ? "x" : "") + Text(), Value());
    return values;
  }

  void Fill(Record& record) {
    record.name = Text();
    for (std::size_t count = Below(4); count > 0; --count) record.Group(Text()) = SomeValues(false);
    if (Below(2) != 0) return;
    record.Group(Below(2) == 0 ? "order" : "ORDER") = SomeValues(true);
    if (Below(2) != 0) return;
    record.positions.emplace();
    for (std::size_t count = Below(3); count > 0; --count)
      record.positions->push_back(SomeValues(false));
  }

  std::mt19937 random_;
};

TEST(Records, ReadBackAsTheyWereWritten) {
  for (unsigned seed = 0; seed < 500; ++seed) {
    const RecordsFile file = Maker(seed).File();
    const std::string text = WriteRecords(file);
    const RecordsFile again = ReadRecords(text, "preview.json");
    EXPECT_EQ(again.records, file.records) << text;
    EXPECT_EQ(again.query, file.query) << text;
  }
}

TEST(Records, RenamingChangesTheKeysAlone) {
  const auto renamed = [](const std::string& contents, std::string_view group,
                          std::string_view from, std::string_view to) {
    return page::Applied(contents, RenameValues(contents, "preview.json", group, from, to));
  };
  const std::string contents =
      "\xEF\xBB\xBF{ \"records\":[\r\n{\"name\" : \"City\", \"customer\":{\"City\" :\"City\"},"
      "\"order\":{\"City\":1.50e1 ,\"positions\":[{\"City\":null}]}, \"x\":{\"City\":true}},\t"
      "{\"CUSTOMER\":{\"a\\\"\":1,\"c\\u0069ty\":null}}],\"query\":\"SELECT City\"}";
  const auto with = [](std::string text, std::string_view old, std::string_view now) {
    return text.replace(text.find(old), old.size(), now);
  };
  EXPECT_EQ(
      renamed(contents, kCustomer, "City", "Gr\"öße"),
      with(with(contents, "\"City\" :", "\"Gr\\\"öße\" :"), "\"c\\u0069ty\"", "\"Gr\\\"öße\""));
  EXPECT_EQ(renamed(contents, kCustomer, "City", "city"),
            with(with(contents, "\"City\" :", "\"city\" :"), "c\\u0069ty", "city"));
  EXPECT_EQ(renamed(contents, kOrder, "City", "Town"), with(contents, "City\":1", "Town\":1"));
  EXPECT_EQ(renamed(contents, kOrder, "Positions", "Town"), contents);
  EXPECT_EQ(renamed(contents, kCustomer, "name", "Town"), contents);
  EXPECT_EQ(renamed("{}", kOrder, "City", "Town"), "{}");
}

TEST(Records, RenamingRefusesWhatTheFileCannotHold) {
  const auto refused = [](std::string_view contents, std::string_view group, std::string_view to) {
    try {
      RenameValues(contents, "preview.json", group, "City", to);
    } catch (const office::JsonFileError& error) {
      return error.Text(Language::english);
    }
    return std::string();
  };
  EXPECT_EQ(refused("\xEF\xBB\xBF{\"records\":[{},{\"customer\":{\"TOWN\":1,\"City\":2}},"
                    "{\"customer\":{\"City\":1}},{\"customer\":{\"city\":1,\"Town\":2}}]}",
                    kCustomer, "Town"),
            "preview.json:1:38: error: records[1].customer: the record has values of both names, "
            "\"City\" and \"TOWN\". Delete one. [preview-file]\n"
            "preview.json:1:86: error: records[3].customer: the record has values of both names, "
            "\"city\" and \"Town\". Delete one. [preview-file]");
  EXPECT_EQ(refused("{\"records\":[{\"order\":{\"City\":2}}]}", kOrder, "positions"),
            "preview.json:1:23: error: In a record, \"positions\" are the positions of the order. "
            "Choose another name. [preview-file]");
  EXPECT_NE(refused("{\"records\":{}}", kOrder, "Town"), "");
}

TEST(Records, AnUnreadableFileIsAFileError) {
  std::string pattern = (std::filesystem::temp_directory_path() / "records-XXXXXX").string();
  ASSERT_NE(mkdtemp(pattern.data()), nullptr);
  const std::filesystem::path folder = pattern;
  EXPECT_THROW(LoadRecords((folder / "missing.json").string()), page::FileError);
  EXPECT_THROW(LoadRecords(folder.string()), page::FileError);
  const std::string file = (folder / "preview.json").string();
  std::ofstream(file) << "{}";
  EXPECT_TRUE(LoadRecords(file).records.empty());
  std::ofstream(file) << "{}" << std::string(4 << 20, ' ');
  EXPECT_THROW(LoadRecords(file), page::FileError);
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace kvo::preview
