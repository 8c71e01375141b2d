#include "document/office/Office.h"

#include <gtest/gtest.h>

#include "tests/core/ErrorOf.h"

namespace kvo::office {
namespace {

std::shared_ptr<Office> Example(ConnectionFactory connections = {},
                                std::optional<std::string> database = {}) {
  return std::make_shared<Office>(
      Office::Description{.contactFields = {{"LastName", "Nachname", 0},
                                            {"Birthday", "Geburtstag", 6},
                                            {"City", "Ort", 0},
                                            {"City", "Zweiter Ort", 1}},
                          .orderFields = {{"OrderID", "Bestellnummer", -2147483647 - 1}},
                          .shopDatabase = std::move(database)},
      std::move(connections));
}

std::vector<std::string> DisplayNames(Object& collection) {
  std::vector<std::string> names;
  ForEach(collection, [&](const Variant& field) {
    names.push_back(ToText(ToObject(field)->Get("DisplayName")));
  });
  return names;
}

TEST(Office, FieldsAreEnumeratedInFileOrderWithDuplicates) {
  const auto office = Example();
  EXPECT_EQ(DisplayNames(*ToObject(office->Get("ContactFields"))),
            (std::vector<std::string>{"Nachname", "Geburtstag", "Ort", "Zweiter Ort"}));
  EXPECT_EQ(DisplayNames(*ToObject(office->Get("OrderFields"))),
            (std::vector<std::string>{"Bestellnummer"}));
}

TEST(Office, AFieldIsFoundByItsSqlName) {
  const auto fields = ToObject(Example()->Get("ContactFields"));
  const auto field = ToObject(fields->Item("Birthday"));
  EXPECT_EQ(field->Get("SQLName"), Variant("Birthday"));
  EXPECT_EQ(field->Get("DisplayName"), Variant("Geburtstag"));
  EXPECT_EQ(field->Get("DataType"), Variant(std::int32_t{6}));
}

TEST(Office, TheLookUpComparesExactly) {
  const auto fields = ToObject(Example()->Get("ContactFields"));
  for (const char* key : {"birthday", "Birthday ", "", "Birth"})
    EXPECT_EQ(ErrorOf([&] { fields->Item(key); }), 9) << key;
}

TEST(Office, AnUnknownKeyIsNamedInTheError) {
  const auto fields = ToObject(Example()->Get("ContactFields"));
  try {
    fields->Item("Cty");
    FAIL() << "found";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), 9);
    EXPECT_EQ(error.About(), "\"Cty\"");
  }
}

TEST(Office, OfTwoFieldsWithTheSameSqlNameTheFirstIsFound) {
  const auto fields = ToObject(Example()->Get("ContactFields"));
  EXPECT_EQ(ToObject(fields->Item("City"))->Get("DisplayName"), Variant("Ort"));
}

TEST(Office, FieldsAreFoundByNumberFromOne) {
  const auto fields = ToObject(Example()->Get("ContactFields"));
  EXPECT_EQ(fields->Get("Count"), Variant(std::int32_t{4}));
  EXPECT_EQ(ToObject(fields->Item(std::int32_t{4}))->Get("DisplayName"), Variant("Zweiter Ort"));
  EXPECT_EQ(ErrorOf([&] { fields->Item(std::int32_t{0}); }), 9);
  EXPECT_EQ(ErrorOf([&] { fields->Item(std::int32_t{5}); }), 9);
}

TEST(Office, MembersIgnoreCase) {
  const auto fields = ToObject(Example()->Get("contactfields"));
  const Variant key = "LastName";
  EXPECT_EQ(ToObject(fields->Call("item", {&key, 1}))->Get("sqlname"), Variant("LastName"));
}

TEST(Office, TheDataTypeHoldsAll32Bits) {
  const auto fields = ToObject(Example()->Get("OrderFields"));
  EXPECT_EQ(ToObject(fields->Item("OrderID"))->Get("DataType"),
            Variant(std::int32_t{-2147483647 - 1}));
}

TEST(Office, AnUnknownMemberIsError438AndNothingCanBeWritten) {
  const auto office = Example();
  EXPECT_EQ(ErrorOf([&] { office->Get("Fields"); }), 438);
  EXPECT_EQ(ErrorOf([&] { office->Let("ContactFields", {}); }), 438);
  EXPECT_EQ(ErrorOf([&] { ToObject(office->Get("ContactFields"))->Get("Nobody"); }), 438);
  EXPECT_EQ(ErrorOf([&] {
              ToObject(ToObject(office->Get("ContactFields"))->Item("City"))->Get("Nobody");
            }),
            438);
}

TEST(Office, FieldsOutliveTheirOffice) {
  auto office = Example();
  const auto fields = ToObject(office->Get("ContactFields"));
  office.reset();
  const auto walk = fields->Enumerate();
  EXPECT_EQ(ToObject(*walk->Next())->Get("SQLName"), Variant("LastName"));
}

TEST(Office, TheConnectionIsMadeOnFirstUseAndKept) {
  int made = 0;
  const auto office = Example(
      [&](const std::string& connectionString) {
        ++made;
        EXPECT_EQ(connectionString, "sqlite3:///shop.db");
        return std::make_shared<Collection>();
      },
      "sqlite3:///shop.db");
  EXPECT_EQ(made, 0);
  const auto connection = ToObject(office->Get("ShopDBConnection"));
  EXPECT_EQ(ToObject(office->Get("ShopDBConnection")), connection);
  EXPECT_EQ(made, 1);
}

TEST(Office, WithoutADatabaseOrAFactoryThereIsNoConnection) {
  const auto factory = [](const std::string&) { return std::make_shared<Collection>(); };
  EXPECT_TRUE(Example(factory)->Get("ShopDBConnection").IsEmpty());
  EXPECT_TRUE(Example({}, "sqlite3:///shop.db")->Get("ShopDBConnection").IsEmpty());
}

}  // namespace
}  // namespace kvo::office
