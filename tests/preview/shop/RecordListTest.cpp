#include <gtest/gtest.h>

#include "document/office/Office.h"
#include "document/preview/Records.h"
#include "document/shop/Recordset.h"
#include "document/shop/Shop.h"
#include "host/headless/HeadlessPlatform.h"
#include "tests/core/ErrorOf.h"
#include "tests/shop/support/SqliteFile.h"

namespace kvo::preview {
namespace {

class RecordListTest : public testing::Test {
 protected:
  RecordListTest() {
    platform_.recordsets = [this] {
      ++opened;
      return shop::NewRecordset();
    };
    file.Run(
        "CREATE TABLE Customers (Nr INTEGER, FirstName TEXT, Email TEXT, IsPremium INTEGER,"
        " Birthday TEXT, OrderID INTEGER, City TEXT);"
        "INSERT INTO Customers VALUES (7, 'Anna', 'anna@kunde.example', 1, '1983-05-17', 4711, "
        "'Kiel'),"
        " (8, 'Jörg & \"Co\"', NULL, 0, '2004-04-23 16:09:53', 4712, NULL),"
        " (9, 'Zoë', '', NULL, 'unbekannt', NULL, 'Ulm')");
  }

  static Record Named(const std::string& name) {
    Record record;
    record.name = name;
    return record;
  }

  ObjectRef Office() const {
    return std::make_shared<office::Office>(
        office::Office::Description{{{"FirstName", "Vorname", 0},
                                     {"Email", "Mail", 0},
                                     {"IsPremium", "Premium", 3},
                                     {"Birthday", "Geburtstag", 6}},
                                    {{"OrderID", "Nummer", 1}, {"Email", "Mail", 0}},
                                    file.ConnectionString()},
        shop::NewConnection);
  }
  RecordList List(const std::string& query, std::vector<Record> records = {}) const {
    return {RecordsFile{std::move(records), query}, Office()};
  }

  shop::SqliteFile file;
  int opened = 0;

 private:
  HeadlessPlatform platform_;
  PlatformScope scope_{platform_};
};

constexpr const char* kAll =
    "SELECT FirstName, Email, IsPremium, Birthday, OrderID, City, 'Hafen' AS \"config.company\","
    " Nr AS \"order.Nr\" FROM Customers ORDER BY Nr";

TEST_F(RecordListTest, MakesARecordOfEachRow) {
  RecordList list = List(kAll);
  EXPECT_EQ(list.Count(), 3);
  const Record anna = list.At(0).value();
  EXPECT_EQ(anna.name, "Anna");
  EXPECT_FALSE(anna.madeUp);
  EXPECT_FALSE(anna.positions.has_value());
  EXPECT_EQ(*anna.Find("customer", "FirstName"), Variant("Anna"));
  EXPECT_EQ(*anna.Find("customer", "Email"), Variant("anna@kunde.example"));
  EXPECT_EQ(*anna.Find("customer", "City"), Variant("Kiel"));
  EXPECT_EQ(*anna.Find("order", "OrderID"), Variant(4711));
  EXPECT_EQ(*anna.Find("order", "Nr"), Variant(7));
  EXPECT_EQ(*anna.Find("config", "company"), Variant("Hafen"));
  EXPECT_EQ(anna.Find("order", "Email"), nullptr);
  EXPECT_EQ(list.At(2)->name, "Zoë");
  EXPECT_FALSE(list.At(3).has_value());
  EXPECT_FALSE(list.At(-1).has_value());
  EXPECT_EQ(list.At(1)->name, "Jörg & \"Co\"");  // in any order
}

TEST_F(RecordListTest, ReadsFlagsAndDatesByTheFieldsType) {
  RecordList list = List(kAll);
  EXPECT_EQ(*list.At(0)->Find("customer", "IsPremium"), Variant(true));
  EXPECT_EQ(*list.At(1)->Find("customer", "IsPremium"), Variant(false));
  EXPECT_EQ(*list.At(2)->Find("customer", "IsPremium"), Variant());
  EXPECT_EQ(*list.At(0)->Find("customer", "Birthday"), Variant("17.05.1983"));
  EXPECT_EQ(*list.At(1)->Find("customer", "Birthday"), Variant("23.04.2004 16:09:53"));
  EXPECT_EQ(*list.At(2)->Find("customer", "Birthday"), Variant("unbekannt"));
  EXPECT_EQ(*list.At(1)->Find("customer", "Email"), Variant());
}

TEST_F(RecordListTest, PutsTheRowsAfterTheFilesRecords) {
  RecordList list = List(kAll, {Named("Erste"), Named("2")});
  EXPECT_EQ(list.At(1)->name, "2");
  EXPECT_EQ(opened, 0);  // not needed yet
  EXPECT_EQ(list.At(2)->name, "Anna");
  EXPECT_EQ(list.Count(), 5);
  EXPECT_EQ(opened, 1);
}

TEST_F(RecordListTest, FindsByNameOrNumber) {
  RecordList list = List(kAll, {Named("Erste"), Named("Zweite"), Named("1")});
  EXPECT_EQ(list.Find("Zweite"), 1);
  EXPECT_EQ(list.Find("2"), 1);
  EXPECT_EQ(list.Find("1"), 2);  // a name
  EXPECT_EQ(opened, 0);
  EXPECT_EQ(list.Find("Zoë"), 5);
  EXPECT_EQ(list.Find("4"), 3);
  EXPECT_EQ(list.Find("7"), std::nullopt);
  EXPECT_EQ(list.Find("0"), std::nullopt);
  EXPECT_EQ(list.Find("anna"), std::nullopt);
  EXPECT_EQ(list.Find(""), std::nullopt);
  EXPECT_EQ(List("SELECT Nr FROM Customers").Find("8"), 1);
  EXPECT_EQ(List("SELECT Nr FROM Customers").Find("2"), 1);
}

TEST_F(RecordListTest, HasAMadeUpRecordWhenThereIsNoOther) {
  for (const char* query : {"", "SELECT * FROM Customers WHERE Nr > 100"}) {
    RecordList list = List(query);
    EXPECT_EQ(list.Count(), 1);
    EXPECT_TRUE(list.At(0).value().madeUp);
    EXPECT_EQ(*list.At(0)->Find("customer", "FirstName"), Variant("Erika"));
    EXPECT_FALSE(list.At(1).has_value());
    EXPECT_EQ(list.Find("1"), 0);
    EXPECT_EQ(list.Find("Erika Muster"), 0);
    EXPECT_EQ(list.Find("2"), std::nullopt);
  }
  RecordList list({}, nullptr);
  EXPECT_TRUE(list.At(0).value().madeUp);
}

TEST_F(RecordListTest, OnlyReads) {
  for (const char* query :
       {"DELETE FROM Customers", "SELECT 1; DELETE FROM Customers", "PRAGMA user_version = 7"})
    EXPECT_EQ(ErrorOf([&] { List(query).At(0); }), 5) << query;
  EXPECT_EQ(List("SELECT * FROM Customers").Count(), 3);
}

TEST_F(RecordListTest, SaysWhyTheRowsCannotBeRead) {
  EXPECT_EQ(ErrorOf([&] { List("SELECT * FROM Missing").At(0); }), 3000);
  RecordList withoutDatabase(RecordsFile{{Named("Erste")}, "SELECT 1"}, nullptr);
  EXPECT_EQ(withoutDatabase.At(0)->name, "Erste");
  EXPECT_EQ(withoutDatabase.Find("1"), 0);
  try {
    withoutDatabase.At(1);
    FAIL() << "read";
  } catch (const LocalizedError& error) {
    EXPECT_NE(error.Text(Language::english).find("needs the shop's database"), std::string::npos);
  }
}

TEST_F(RecordListTest, ReadsManyRowsInFewFetches) {
  file.Run(
      "CREATE TABLE Many (Nr INTEGER); WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1"
      " FROM n WHERE i < 20000) INSERT INTO Many SELECT i FROM n");
  std::weak_ptr<shop::Recordset> recordset;
  HeadlessPlatform platform;
  platform.recordsets = [&] {
    auto made = std::dynamic_pointer_cast<shop::Recordset>(shop::NewRecordset());
    recordset = made;
    return made;
  };
  const PlatformScope scope(platform);
  RecordList list = List("SELECT Nr FROM Many ORDER BY Nr");
  for (std::int64_t i = 0; i < 20'000; ++i)
    ASSERT_EQ(*list.At(i)->Find("customer", "Nr"), Variant(static_cast<std::int32_t>(i + 1)));
  EXPECT_FALSE(list.At(20'000).has_value());
  EXPECT_EQ(recordset.lock()->Asked().records, 20'000U);
  EXPECT_EQ(list.Find("20000"), 19'999);
}

}  // namespace
}  // namespace kvo::preview
